// SPDX-License-Identifier: MIT
#include "app/obeyCommandLine.h"

#include "concurrency/QtMainActor.h"
#include "concurrency/ThreadQueues.h"
#include "linux/commands/askAgent.h"
#include "linux/commands/commandSocketPaths.h"
#include "linux/posix/PosixFileSystem.h"
#include "linux/xdg/JsonPreferenceStore.h"
#include "linux/xdg/sessionLanguages.h"
#include "persistence/AppSettings.h"
#include "platform/language/InstalledFonts.h"
#include "platform/system/Console.h"
#include "platform/system/Directories.h"
#include "shell/texts/InterfaceLanguage.h"
#include "text/Localization.h"

#include <QProcessEnvironment>

#include <variant>

namespace talvera {

namespace {

/// Which letters it can show is the terminal's business.
class TerminalFonts final : public InstalledFonts {
public:
    bool canShow(const QString&) override { return true; }
};

/// The language that the agent speaks, for as long as this lives.
class SpokenLanguage {
public:
    SpokenLanguage(const Directories& directories, Console& console)
        : m_preferences(directories.configuration, m_files, m_actor, m_writer, console)
        , m_settings(m_preferences)
        , m_language({m_files, directories, console, m_fonts}, m_settings.appLanguage.get(),
                     sessionLanguages(QProcessEnvironment::systemEnvironment())) {}

private:
    PosixFileSystem m_files;
    TerminalFonts m_fonts;
    QtMainActor m_actor;
    ThreadSerialQueue m_writer{"Preferences"};
    JsonPreferenceStore m_preferences;
    AppSettings m_settings;
    InterfaceLanguage m_language;
};

/// One row of the list of commands.
QString row(const QString& command, const QString& meaning) {
    constexpr int column = 21;
    return QStringLiteral("  %1 %2").arg(command, -column).arg(meaning);
}

QString helpText() {
    const QStringList lines{
        QStringLiteral("talvera [COMMAND]"),
        {},
        localized("command.help.start", "Without a command: starts Talvera. If it is running already in this "
                                        "session, its panel opens."),
        {},
        localized("command.help.commands",
                  "Commands, for the Talvera that is running, so that any key binding can use it:"),
        row(QStringLiteral("press"), localized("command.help.press", "the hotkey goes down")),
        row(QStringLiteral("release"), localized("command.help.release", "the hotkey goes up")),
        row(QStringLiteral("toggle"),
            localized("command.help.toggle", "begins a dictation, or ends the one that is being recorded")),
        row(QStringLiteral("translate"),
            localized("command.help.translate", "switches translation on or off")),
        row(QStringLiteral("panel"), localized("command.help.panel", "opens the panel")),
        row(QStringLiteral("settings [SECTION]"),
            localized("command.help.settings",
                      "opens the settings; sections: general, hotkey, language, ai, privacy")),
        row(QStringLiteral("status [--json]"),
            localized("command.help.status",
                      "tells what Talvera is doing, and what it lacks; never what was said")),
        {},
        row(QStringLiteral("--settings [SECTION]"),
            localized("command.help.settingsOption", "the same, also when Talvera isn't running yet")),
        row(QStringLiteral("--version"), localized("command.help.version", "tells the version")),
        row(QStringLiteral("--help"), localized("command.help.help", "shows this text")),
        {},
        localized("command.help.exit", "Exit status: 0 done, 1 failed, 2 no such command, 3 Talvera isn't "
                                       "running in this session.")};
    return lines.join(u'\n');
}

ExitStatus obey(const AgentCommand& command, const Directories& directories, Console& console) {
    const auto paths = commandSocketPaths(directories.temporary, QProcessEnvironment::systemEnvironment());
    const auto answer = askAgent(paths, command.words());
    if (const auto* reply = std::get_if<CommandReply>(&answer); reply && reply->isDone) {
        if (!reply->text.isEmpty())
            console.print(reply->text);
        return ExitStatus::Done;
    }
    const SpokenLanguage language(directories, console);
    if (std::holds_alternative<CommandReply>(answer)) {
        console.log(localized("command.refused", "The Talvera that is running is of another version and "
                                                 "doesn't know this command. Start it again."));
        return ExitStatus::Failed;
    }
    if (std::get<AgentSilence>(answer) == AgentSilence::NoAnswer) {
        console.log(localized("command.noAnswer", "Talvera is running, but doesn't answer."));
        return ExitStatus::Failed;
    }
    console.log(localized("command.notRunning", "Talvera isn't running in this session."));
    return ExitStatus::NotRunning;
}

} // namespace

ExitStatus obeyCommandLine(const CommandLine::Purpose& purpose, const Directories& directories,
                           Console& console) {
    if (const auto* command = std::get_if<CommandLine::Command>(&purpose))
        return obey(command->command, directories, console);
    if (std::holds_alternative<CommandLine::Version>(purpose)) {
        console.print(QStringLiteral("Talvera " TALVERA_VERSION));
        return ExitStatus::Done;
    }
    const SpokenLanguage language(directories, console);
    if (const auto* misuse = std::get_if<CommandLine::Misuse>(&purpose)) {
        console.log(formatted(
            localized("command.unknown", "Talvera knows no command “%@”. “talvera --help” lists them all."),
            misuse->arguments));
        return ExitStatus::Misuse;
    }
    console.print(helpText());
    return ExitStatus::Done;
}

} // namespace talvera
