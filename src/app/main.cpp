// SPDX-License-Identifier: MIT
#include "app/CommandLine.h"
#include "app/LinuxMachine.h"
#include "app/QuickWindows.h"
#include "app/StateTrace.h"
#include "app/obeyCommandLine.h"
#include "core/Agent.h"
#include "core/AgentCommand.h"
#include "hotkeys/HotkeyPresets.h"
#include "linux/commands/CommandSocket.h"
#include "linux/commands/commandSocketPaths.h"
#include "linux/posix/AgentDirectory.h"
#include "linux/posix/StandardConsole.h"
#include "linux/posix/TerminationSignals.h"
#include "linux/posix/leftRecordings.h"
#include "linux/support/applicationId.h"
#include "linux/support/privateMemory.h"
#include "linux/xdg/XdgDirectories.h"
#include "persistence/AppSettings.h"
#include "platform/keyboard/EventTap.h"
#include "platform/system/PlatformError.h"
#include "views/ViewEngine.h"

#include <QGuiApplication>
#include <QProcessEnvironment>

#include <cstdlib>
#include <optional>
#include <variant>

using namespace talvera;

namespace {

constexpr Duration windowsDelay = seconds(0.5);

QStringList argumentsOf(int argc, char** argv) {
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    return arguments;
}

/// While it lives, an end by exit() is told: the toolkit calls that when the display server goes.
class ExitWatch {
public:
    explicit ExitWatch(Console& console) {
        s_console = &console;
        std::atexit(tell);
    }
    ExitWatch(const ExitWatch&) = delete;
    ExitWatch& operator=(const ExitWatch&) = delete;
    ~ExitWatch() { s_console = nullptr; }

private:
    static void tell() {
        if (s_console)
            s_console->log(QStringLiteral("The display server has gone, and Talvera ends with it."));
    }

    static inline Console* s_console = nullptr;
};

CommandReply obey(Agent& agent, const CommandRequest& request) {
    const auto command = AgentCommand::of(request.words);
    if (!command)
        return {.isDone = false};
    return {.text = agent.obey(*command, request.begun)};
}

/// Runs the agent on this machine until the event loop ends.
int runAgent(QtMainActor& actor, LinuxMachine& linuxMachine, Console& console, DisplayClaim& claim,
             const LaunchRequest& request, const QStringList& commandPaths) {
    const auto machine = linuxMachine.machine();
    AppSettings settings(machine.system.preferences,
                         defaultHotkey(machine.keyboard.eventTaps.hearsKeysAlone()));
    QuickWindows windows(
        {actor, settings, linuxMachine.appearance(), linuxMachine.overlays(), linuxMachine.panels()});
    Agent agent(machine, settings, windows);
    std::optional<StateTrace> trace;
    std::optional<CommandSocket> commands;
    claim.onSecondStart([&agent](const QString& purpose) {
        agent.startedAgain(LaunchRequest::of(purpose.split(u' ')).value_or(LaunchRequest()));
    });
    actor.post([&] {
#ifdef TALVERA_DIAGNOSTICS
        if (StateTrace::isWanted())
            trace.emplace(
                StateTrace::Parts{console, agent.menuBar, agent.hud, agent.readiness, agent.onboarding});
#endif
        agent.launch();
        commands.emplace(commandPaths,
                         [&agent](const CommandRequest& command) { return obey(agent, command); });
        for (const auto& path : commands->failed())
            console.log(QStringLiteral("Talvera can't take commands at ") + path);
        if (request.opensSettings)
            agent.openSettings(request.section);
        // The first dictation shall find its window made, and the launch not wait for it.
        actor.startTimer(windowsDelay, [&agent] { agent.prepareWindows(); });
    });
    const int status = QGuiApplication::exec();
    linuxMachine.endWork(); // a recogniser that still runs works with the agent's parts
    return status;
}

/// Does what the program was started for, when that is not to be the agent.
int runCommand(int argc, char** argv, const CommandLine::Purpose& purpose, StandardConsole& console,
               const Directories& directories) {
    const QCoreApplication application(argc, argv);
    return static_cast<int>(obeyCommandLine(purpose, directories, console));
}

/// Runs the one agent of this display until the session or the user ends it.
int run(int argc, char** argv, StandardConsole& console, Directories directories) {
    const auto request = LaunchRequest::of(argumentsOf(argc, argv));
    if (!request) {
        console.log(QStringLiteral("usage: talvera [--settings [general|hotkey|language|ai|privacy]]"));
        return static_cast<int>(ExitStatus::Misuse);
    }
    auto session = SessionOffer::open();
    if (const auto reason = session.whyNoWindows(); !reason.isEmpty()) {
        console.log(reason);
        return EXIT_FAILURE;
    }
    const auto claim = session.claim;
    if (!claim->isOurs()) {
        console.print(claim->tellHolder(request->arguments().join(u' '))
                          ? QStringLiteral("[app] Talvera is running already")
                          : QStringLiteral("[app] Talvera is running, but does not answer"));
        return EXIT_SUCCESS;
    }
    const ExitWatch watch(console);
    const auto commandPaths =
        commandSocketPaths(directories.temporary, QProcessEnvironment::systemEnvironment());
    // Static, to go with its recordings also by exit().
    static AgentDirectory directory(directories.temporary);
    removeLeftRecordings(directories.temporary); // of versions that had no directory of their own
    directories.temporary = directory.path();
    session.prepareToolkit();
    ViewEngine::prepareProcess();
    QGuiApplication application(argc, argv);
    QGuiApplication::setDesktopFileName(QString::fromLatin1(applicationId));
    QGuiApplication::setQuitOnLastWindowClosed(false);
    TerminationSignals termination([] { QCoreApplication::quit(); });
    directory.keepInPlace();

    // Never destroyed: it owns the tasks that sleep when the program ends, and they must not be resumed.
    static QtMainActor& actor = *new QtMainActor;
    int status = EXIT_SUCCESS;
    {
        LinuxMachine machine(actor, console, directories, std::move(session));
        status = runAgent(actor, machine, console, *claim, *request, commandPaths);
    }
    return status;
}

} // namespace

int main(int argc, char** argv) {
    leaveNoCoreFile();
    StandardConsole console;
    try {
        const auto directories = XdgDirectories::directories();
        const auto purpose = CommandLine::purposeOf(argumentsOf(argc, argv));
        return std::holds_alternative<CommandLine::Run>(purpose)
                   ? run(argc, argv, console, directories)
                   : runCommand(argc, argv, purpose, console, directories);
    } catch (const PlatformError& error) {
        console.log(QStringLiteral("Talvera can't start: ") + error.message());
        return EXIT_FAILURE;
    }
}
