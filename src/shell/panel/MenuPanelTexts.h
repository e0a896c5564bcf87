// SPDX-License-Identifier: MIT
#pragma once

#include "text/Localization.h"

#include <QObject>

namespace talvera {

/// The words of the panel that never change while the program runs.
class MenuPanelTexts : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString fix MEMBER fix CONSTANT)
    Q_PROPERTY(QString allowMicrophone MEMBER allowMicrophone CONSTANT)
    Q_PROPERTY(QString allowAccessibility MEMBER allowAccessibility CONSTANT)
    Q_PROPERTY(QString translateTo MEMBER translateTo CONSTANT)
    Q_PROPERTY(QString toggleHelp MEMBER toggleHelp CONSTANT)
    Q_PROPERTY(QString searchLanguages MEMBER searchLanguages CONSTANT)
    Q_PROPERTY(QString noLanguage MEMBER noLanguage CONSTANT)
    Q_PROPERTY(QString thisWeek MEMBER thisWeek CONSTANT)
    Q_PROPERTY(QString thisWeekSpoken MEMBER thisWeekSpoken CONSTANT)
    Q_PROPERTY(QString dictationsSpoken MEMBER dictationsSpoken CONSTANT)
    Q_PROPERTY(QString settings MEMBER settings CONSTANT)
    Q_PROPERTY(QString settingsShortcut MEMBER settingsShortcut CONSTANT)
    Q_PROPERTY(QString checkForUpdates MEMBER checkForUpdates CONSTANT)
    Q_PROPERTY(QString checkingForUpdates MEMBER checkingForUpdates CONSTANT)
    Q_PROPERTY(QString quit MEMBER quit CONSTANT)
    Q_PROPERTY(QString quitShortcut MEMBER quitShortcut CONSTANT)

public:
    const QString fix = localized("menu.readiness.fix", "Fix");
    const QString allowMicrophone = localized("menu.readiness.mic", "Allow Microphone");
    const QString allowAccessibility = localized("menu.readiness.ax", "Allow Accessibility");
    const QString translateTo = localized("menu.translateTo", "Translate to");
    const QString toggleHelp = localized("menu.translateTo.toggle", "Turns translation on and off");
    const QString searchLanguages = localized("menu.language.search", "Search languages");
    const QString noLanguage = localized("menu.language.noMatch", "No such language");
    const QString cleanupTitle = localized("menu.aiCleanup.title", "AI Cleanup");
    const QString cleanupSubtitle =
        localized("menu.aiCleanup.subtitle",
                  "For stutter-heavy speech — leave off if Whisper output already looks clean");
    const QString thisWeek = localized("menu.stats.thisWeek", "THIS WEEK");
    const QString thisWeekSpoken =
        localized("menu.stats.thisWeek.spoken", "Time saved in the last seven days");
    const QString dictationsSpoken =
        localized("menu.stats.dictations.spoken", "Dictations in the last seven days");
    const QString settings = localized("menu.settings", "Settings…");
    const QString settingsShortcut = localized("menu.settings.shortcut", "⌘,");
    const QString checkForUpdates = localized("menu.checkForUpdates", "Check for Updates…");
    const QString checkingForUpdates = localized("menu.checkForUpdates.busy", "Checking for Updates…");
    const QString quit = localized("menu.quit", "Quit Talvera");
    const QString quitShortcut = localized("menu.quit.shortcut", "⌘Q");
};

} // namespace talvera
