// SPDX-License-Identifier: MIT
#pragma once

#include "shell/settings/SettingsRows.h"

namespace talvera {

class AppSettings;
class InterfaceLanguage;
class LoginItem;
class SoundPlayer;

/// The section of the interface's language, the start, the sound and the delivery. Main thread only.
class GeneralSettings final : public QObject {
    Q_OBJECT
    Q_PROPERTY(talvera::ChoiceRow* displayLanguage READ displayLanguage CONSTANT)
    Q_PROPERTY(bool asksToRelaunch READ asksToRelaunch NOTIFY languageChanged)
    Q_PROPERTY(QString relaunchText READ relaunchText CONSTANT)
    Q_PROPERTY(QString relaunchNow READ relaunchNow CONSTANT)
    Q_PROPERTY(talvera::SwitchRow* launchAtLogin READ launchAtLogin CONSTANT)
    Q_PROPERTY(talvera::SwitchRow* showMenuBarIcon READ showMenuBarIcon CONSTANT)
    Q_PROPERTY(talvera::ChoiceRow* startSound READ startSound CONSTANT)
    Q_PROPERTY(talvera::SwitchRow* typewriter READ typewriter CONSTANT)
    Q_PROPERTY(talvera::SliderRow* typewriterThreshold READ typewriterThreshold CONSTANT)
    Q_PROPERTY(talvera::SwitchRow* protectFocus READ protectFocus CONSTANT)
    Q_PROPERTY(talvera::ChoiceRow* protectionMode READ protectionMode CONSTANT)

public:
    /// All of it outlives the model.
    struct Parts {
        AppSettings& settings;
        const InterfaceLanguage& language; ///< that is spoken now
        LoginItem& loginItem;
        SoundPlayer& sounds;
        /// Ends the program and starts it anew.
        std::function<void()> relaunch;
    };

    explicit GeneralSettings(Parts parts);

    /// The section comes into view: whether the program starts at login is asked of the session anew.
    Q_INVOKABLE void appear();

    /// Another language than the one spoken is chosen.
    bool asksToRelaunch() const;
    QString relaunchText() const;
    QString relaunchNow() const;
    Q_INVOKABLE void relaunch() const { m_parts.relaunch(); }

    ChoiceRow* displayLanguage() { return &m_displayLanguage; }
    SwitchRow* launchAtLogin() { return &m_launchAtLogin; }
    SwitchRow* showMenuBarIcon() { return &m_showMenuBarIcon; }
    ChoiceRow* startSound() { return &m_startSound; }
    SwitchRow* typewriter() { return &m_typewriter; }
    SliderRow* typewriterThreshold() { return &m_typewriterThreshold; }
    SwitchRow* protectFocus() { return &m_protectFocus; }
    ChoiceRow* protectionMode() { return &m_protectionMode; }

Q_SIGNALS:
    void languageChanged();

private:
    void changeLaunchAtLogin(bool enabled);

    const Parts m_parts;
    bool m_launchesAtLogin; ///< as the session has told last
    ChoiceRow m_displayLanguage;
    SwitchRow m_launchAtLogin;
    SwitchRow m_showMenuBarIcon;
    ChoiceRow m_startSound;
    SwitchRow m_typewriter;
    SliderRow m_typewriterThreshold;
    SwitchRow m_protectFocus;
    ChoiceRow m_protectionMode;
    Subscription m_languageChanges;
};

} // namespace talvera
