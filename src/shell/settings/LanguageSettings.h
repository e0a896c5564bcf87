// SPDX-License-Identifier: MIT
#pragma once

#include "shell/settings/HotkeyRecorderModel.h"
#include "shell/settings/SettingsRows.h"

namespace talvera {

class AppSettings;

/// The section of the language spoken and of the one written. Main thread only.
class LanguageSettings final : public QObject {
    Q_OBJECT
    Q_PROPERTY(talvera::ChoiceRow* source READ source CONSTANT)
    Q_PROPERTY(talvera::SwitchRow* translate READ translate CONSTANT)
    Q_PROPERTY(talvera::ChoiceRow* target READ target CONSTANT)
    Q_PROPERTY(QString toggleTitle READ toggleTitle CONSTANT)
    Q_PROPERTY(QString toggleSubtitle READ toggleSubtitle CONSTANT)
    Q_PROPERTY(QString toggleAbsent READ toggleAbsent CONSTANT)
    Q_PROPERTY(QString toggleClear READ toggleClear CONSTANT)
    Q_PROPERTY(bool hasToggle READ hasToggle NOTIFY toggleChanged)
    Q_PROPERTY(talvera::HotkeyRecorderModel* toggle READ toggle CONSTANT)

public:
    /// All of it outlives the model. `toggle` records the shortcut that switches translation.
    LanguageSettings(AppSettings& settings, HotkeyRecorderModel& toggle);

    ChoiceRow* source() { return &m_source; }
    SwitchRow* translate() { return &m_translate; }
    ChoiceRow* target() { return &m_target; }

    QString toggleTitle() const;
    QString toggleSubtitle() const;
    QString toggleAbsent() const; ///< what stands for no shortcut
    QString toggleClear() const;
    bool hasToggle() const;
    HotkeyRecorderModel* toggle() { return &m_toggle; }
    /// Ends a recording and leaves no shortcut.
    Q_INVOKABLE void clearToggle() { m_toggle.clear(); }

Q_SIGNALS:
    void toggleChanged();

private:
    AppSettings& m_settings;
    HotkeyRecorderModel& m_toggle;
    ChoiceRow m_source;
    SwitchRow m_translate;
    ChoiceRow m_target;
    Subscription m_toggleChanges;
};

} // namespace talvera
