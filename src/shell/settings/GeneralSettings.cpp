// SPDX-License-Identifier: MIT
#include "shell/settings/GeneralSettings.h"

#include "language/AppLanguage.h"
#include "persistence/AppSettings.h"
#include "platform/system/PlatformError.h"
#include "shell/settings/LaunchAtLogin.h"
#include "shell/settings/StartSound.h"
#include "shell/settings/relaunchBanner.h"
#include "shell/texts/InterfaceLanguage.h"
#include "text/Localization.h"

#include <cmath>
#include <utility>

namespace talvera {

namespace {

using Choices = std::vector<ChoiceRow::Choice>;

constexpr SliderRow::Range thresholdRange{.from = 1, .to = 60, .step = 1};

RowText displayLanguageText() {
    return {localized("settings.general.displayLanguage.title", "Display language"),
            localized("settings.general.displayLanguage.subtitle",
                      "Language of the Talvera interface. Restart required to apply.")};
}

Choices displayLanguages() {
    Choices choices;
    for (const auto& language : AppLanguage::all()) {
        const auto name = language.code == u"system"
                              ? localized("settings.general.language.system", "Follow system")
                              : language.nativeName;
        choices.push_back({language.code, name});
    }
    return choices;
}

/// A code of a version to come is shown as what it comes to here.
Binding<QString> displayLanguageOf(AppSettings& settings) {
    auto& setting = settings.appLanguage;
    return boundAs<QString, QString>(
        setting, [](const QString& code) { return AppLanguage::byCode(code).code; },
        [&setting](const QString& code) { setting.set(code); });
}

RowText launchAtLoginText() {
    return {
        localized("settings.general.launchAtLogin.title", "Launch at login"),
        localized("settings.general.launchAtLogin.subtitle", "Start Talvera automatically when you log in.")};
}

RowText showMenuBarIconText() {
    return {localized("settings.general.showMenuBarIcon.title", "Show in menu bar"),
            localized("settings.general.showMenuBarIcon.subtitle",
                      "Keep the Talvera icon visible. Turn off for a cleaner menu bar — the hotkey still "
                      "works.")};
}

RowText startSoundText() {
    return {localized("settings.general.soundOnStart.title", "Sound on start"),
            localized("settings.general.soundOnStart.subtitle",
                      "Chime when recording begins. Pick Off to disable, or any system sound. Selecting "
                      "plays a preview.")};
}

Choices startSounds() {
    Choices choices;
    for (const auto& sound : StartSound::all()) {
        const auto text =
            sound.name == u"Off" ? localized("settings.general.soundOnStart.off", "Off") : sound.name;
        choices.push_back({sound.name, text});
    }
    return choices;
}

/// What is chosen can be heard at once.
Binding<QString> startSoundOf(AppSettings& settings, SoundPlayer& sounds) {
    auto& setting = settings.startSoundName;
    return boundAs<QString, QString>(
        setting, [](const QString& name) { return StartSound::byName(name).name; },
        [&setting, &sounds](const QString& name) {
            setting.set(name);
            playStartSound(sounds, name);
        });
}

RowText typewriterText() {
    return {localized("settings.general.typewriterMode.title", "Typewriter on short recordings"),
            localized("settings.general.typewriterMode.subtitle",
                      "On: short dictations are typed character by character; longer ones paste instantly. "
                      "Off: everything pastes instantly.")};
}

RowText thresholdText() {
    return {
        localized("settings.general.typewriterThreshold.label", "Type recordings up to"),
        localized("settings.general.typewriterThreshold.description", "What takes longer to say is pasted.")};
}

QString secondsText(double seconds) {
    return counted("settings.general.typewriterThreshold.value", "%lld seconds", std::llround(seconds));
}

RowText protectFocusText() {
    return {localized("settings.general.protectFocus.title", "Protect focus target"),
            localized("settings.general.protectFocus.subtitle",
                      "If you switch apps while dictating, Talvera brings the original app forward or copies "
                      "the text to your clipboard instead of typing into the new window.")};
}

RowText protectionModeText() {
    return {localized("settings.general.protectFocus.mode.title", "When another app is in front"), {}};
}

Choices protectionModes() {
    return {{rawValue(FocusProtectionMode::Reactivate),
             localized("settings.general.protectFocus.mode.reactivate", "Try to reactivate original app")},
            {rawValue(FocusProtectionMode::ClipboardOnly),
             localized("settings.general.protectFocus.mode.clipboardOnly", "Always copy to clipboard")}};
}

QString launchAtLoginProblem(const PlatformError& error) {
    if (error.is(std::errc::no_space_on_device))
        return localized("settings.general.launchAtLogin.diskFull",
                         "This couldn't be changed: the disk is full.");
    return localized("settings.general.launchAtLogin.failed",
                     "This couldn't be changed: the folder with your autostart entries can't be written to.");
}

} // namespace

GeneralSettings::GeneralSettings(Parts parts)
    : m_parts(std::move(parts))
    , m_launchesAtLogin(m_parts.loginItem.isRegistered())
    , m_displayLanguage(displayLanguageText(), displayLanguages(), displayLanguageOf(m_parts.settings))
    , m_launchAtLogin(launchAtLoginText(), {.read = [this] { return m_launchesAtLogin; },
                                            .assign = [this](bool on) { changeLaunchAtLogin(on); },
                                            .observe = nullptr})
    , m_showMenuBarIcon(showMenuBarIconText(), bound(m_parts.settings.showMenuBarIcon))
    , m_startSound(startSoundText(), startSounds(), startSoundOf(m_parts.settings, m_parts.sounds))
    , m_typewriter(typewriterText(), boundToSwitch(m_parts.settings.insertionMode,
                                                   InsertionMode::AutoByDuration, InsertionMode::Paste))
    , m_typewriterThreshold(thresholdText(), thresholdRange,
                            bound(m_parts.settings.typewriterThresholdSeconds), secondsText)
    , m_protectFocus(protectFocusText(), bound(m_parts.settings.protectFocusTarget))
    , m_protectionMode(protectionModeText(), protectionModes(), bound(m_parts.settings.focusProtectionMode))
    , m_languageChanges(
          m_parts.settings.appLanguage.observe([this](const QString&) { Q_EMIT languageChanged(); })) {
    m_typewriterThreshold.showWhile([this] { return m_typewriter.isOn(); });
    m_typewriterThreshold.follow(m_parts.settings.insertionMode);
    m_protectionMode.showWhile([this] { return m_protectFocus.isOn(); });
    m_protectionMode.follow(m_parts.settings.protectFocusTarget);
}

void GeneralSettings::appear() {
    m_launchesAtLogin = m_parts.loginItem.isRegistered();
    m_launchAtLogin.setProblem({});
}

void GeneralSettings::changeLaunchAtLogin(bool enabled) {
    QString problem;
    try {
        setLaunchAtLogin(m_parts.loginItem, enabled);
    } catch (const PlatformError& error) {
        problem = launchAtLoginProblem(error);
    }
    m_launchesAtLogin = m_parts.loginItem.isRegistered();
    m_launchAtLogin.setProblem(problem);
}

/// The session's first language may be one that we don't speak: a new start would change nothing then.
bool GeneralSettings::asksToRelaunch() const {
    const auto system = QStringLiteral("system");
    const auto& chosen = m_parts.settings.appLanguage.get();
    const auto& language = m_parts.language;
    return relaunchBanner(language.spoken(), chosen == system ? system : language.bestFor(chosen),
                          language.bestFor(system));
}

QString GeneralSettings::relaunchText() const {
    return localized("settings.general.language.restartBanner",
                     "Talvera speaks the new language after a restart.");
}

QString GeneralSettings::relaunchNow() const {
    return localized("settings.general.language.relaunchNow", "Restart now");
}

} // namespace talvera
