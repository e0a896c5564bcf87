// SPDX-License-Identifier: MIT
#pragma once

#include "shell/settings/HotkeyRecorderModel.h"
#include "shell/settings/SettingsRows.h"

#include <QVariantList>

namespace talvera {

class AppSettings;
class KeyboardLayout;

/// A hotkey that the settings offer.
struct HotkeyPresetRow {
    Q_GADGET
    Q_PROPERTY(QString id MEMBER id CONSTANT)
    Q_PROPERTY(QStringList keys MEMBER keys CONSTANT)
    Q_PROPERTY(QString label MEMBER label CONSTANT)
    Q_PROPERTY(QString badge MEMBER badge CONSTANT)

public:
    QString id;
    QStringList keys;
    QString label;
    QString badge; ///< empty for all but the default
};

/// The section of the hotkey. Main thread only.
class HotkeySettings final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString currentLabel READ currentLabel CONSTANT)
    Q_PROPERTY(QStringList currentKeys READ currentKeys NOTIFY changed)
    Q_PROPERTY(QString currentText READ currentText NOTIFY changed)
    Q_PROPERTY(QString recorderHint READ recorderHint CONSTANT)
    Q_PROPERTY(talvera::HotkeyRecorderModel* recorder READ recorder CONSTANT)
    Q_PROPERTY(QVariantList presets READ presets CONSTANT)
    Q_PROPERTY(QString selectedId READ selectedId NOTIFY changed)
    Q_PROPERTY(QString customText READ customText NOTIFY changed)
    Q_PROPERTY(talvera::SwitchRow* tapToToggle READ tapToToggle CONSTANT)
    Q_PROPERTY(QString fnWarning READ fnWarning NOTIFY changed)
    Q_PROPERTY(QString fnSettingsText READ fnSettingsText CONSTANT)

public:
    /// All of it outlives the model. `recorder` is the hotkey's.
    struct Parts {
        AppSettings& settings;
        KeyboardLayout& layout;
        HotkeyRecorderModel& recorder;
        /// Opens the keyboard settings of the desktop.
        std::function<void()> openKeyboardSettings;
    };

    explicit HotkeySettings(Parts parts);

    QString currentLabel() const;
    /// The hotkey, as caps and in words.
    QStringList currentKeys() const;
    QString currentText() const;
    QString recorderHint() const;
    HotkeyRecorderModel* recorder() { return &m_parts.recorder; }

    /// Of HotkeyPresetRow, in their order.
    const QVariantList& presets() const { return m_presets; }
    /// The preset that is the hotkey; "custom" when none is.
    QString selectedId() const;
    /// Chooses the preset of that id, and ends a recording; others are left alone.
    Q_INVOKABLE void choose(const QString& id);
    QString customText() const;
    /// Begins to record a hotkey of the user's own.
    Q_INVOKABLE void recordCustom() { m_parts.recorder.record(); }

    SwitchRow* tapToToggle() { return &m_tapToToggle; }

    /// What the user has to know of the Fn key; empty while another one is chosen.
    QString fnWarning() const;
    QString fnSettingsText() const;
    Q_INVOKABLE void openKeyboardSettings() const { m_parts.openKeyboardSettings(); }

Q_SIGNALS:
    void changed();

private:
    bool isFn() const;

    const Parts m_parts;
    QVariantList m_presets;
    SwitchRow m_tapToToggle;
    Subscription m_bindings;
};

} // namespace talvera
