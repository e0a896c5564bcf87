// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Published.h"
#include "shell/settings/HotkeyRecorderModel.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantList>

#include <functional>

namespace talvera {

class AppSettings;
class KeyboardLayout;
class OnboardingController;

/// A hotkey that the wizard offers.
struct HotkeyChoice {
    Q_GADGET
    Q_PROPERTY(QString id MEMBER id CONSTANT)
    Q_PROPERTY(QStringList keys MEMBER keys CONSTANT)
    Q_PROPERTY(QString label MEMBER label CONSTANT)
    Q_PROPERTY(QString desc MEMBER desc CONSTANT)
    Q_PROPERTY(bool recommended MEMBER recommended CONSTANT)

public:
    QString id;
    QStringList keys;
    QString label;
    QString desc;
    bool recommended = false;
};

/// The step in which the user chooses the hotkey. Main thread only.
class HotkeyChoiceModel final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QString body READ body CONSTANT)
    Q_PROPERTY(QVariantList presets READ presets CONSTANT)
    Q_PROPERTY(QString recommendedText READ recommendedText CONSTANT)
    Q_PROPERTY(QString selectedId READ selectedId NOTIFY changed)
    Q_PROPERTY(QString customText READ customText NOTIFY changed)
    Q_PROPERTY(QString customHint READ customHint NOTIFY changed)
    Q_PROPERTY(QString customKeys READ customKeys NOTIFY changed)
    Q_PROPERTY(talvera::HotkeyRecorderModel* recorder READ recorder CONSTANT)
    Q_PROPERTY(QString fnWarning READ fnWarning NOTIFY changed)
    Q_PROPERTY(QString fnSettingsText READ fnSettingsText CONSTANT)

public:
    /// `recorder` is null where no chord can be recorded.
    HotkeyChoiceModel(OnboardingController& controller, AppSettings& settings, KeyboardLayout& layout,
                      HotkeyRecorderModel* recorder);

    QString title() const;
    QString body() const;
    /// Of HotkeyChoice, in their order.
    QVariantList presets() const { return m_presets; }
    QString recommendedText() const;

    /// The preset that is the hotkey now; "custom" when none is.
    QString selectedId() const;
    /// Chooses the preset of that id; others are left alone.
    Q_INVOKABLE void choose(const QString& id);

    // The row of the user's own chord
    QString customText() const;
    QString customHint() const;
    /// The hotkey's name if it is the user's own; else empty.
    QString customKeys() const;
    HotkeyRecorderModel* recorder() const { return m_recorder; }
    /// A chord is no longer being recorded.
    void stopRecording();

    /// What the user has to know of the Fn key; empty while another one is chosen.
    QString fnWarning() const;
    QString fnSettingsText() const;
    Q_INVOKABLE void openKeyboardSettings();
    std::function<void()> onKeyboardSettings;

Q_SIGNALS:
    void changed();

private:
    OnboardingController& m_controller;
    AppSettings& m_settings;
    KeyboardLayout& m_layout;
    HotkeyRecorderModel* m_recorder;
    QVariantList m_presets;
    Cancellables m_cancellables;
};

} // namespace talvera
