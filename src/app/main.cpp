// SPDX-License-Identifier: MIT
#include "app/Agent.h"
#include "app/Machine.h"
#include "linux/posix/SingleInstance.h"
#include "linux/posix/TerminationSignals.h"
#include "linux/posix/leftRecordings.h"
#include "linux/support/ApplicationId.h"
#include "linux/xdg/XdgDirectories.h"
#include "platform/system/PlatformError.h"
#include "views/ViewEngine.h"

#include <QGuiApplication>

#include <cstdlib>

using namespace talvera;

namespace {

/// Runs the agent until the session or the user ends it.
int run(int argc, char** argv, StandardConsole& console, const Directories& directories) {
    SingleInstance instance(directories.temporary);
    if (!instance.isFirst()) {
        console.print(instance.tellFirst() ? QStringLiteral("[app] Talvera is running already")
                                           : QStringLiteral("[app] Talvera is running, but does not answer"));
        return EXIT_SUCCESS;
    }
    removeLeftRecordings(directories.temporary);

    auto x11 = X11Connection::open();
    if (x11->isBroken()) {
        console.log(QStringLiteral("Talvera needs an X server, and $DISPLAY names none that answers."));
        return EXIT_FAILURE;
    }
    ViewEngine::prepareProcess();
    QGuiApplication application(argc, argv);
    QGuiApplication::setDesktopFileName(QString::fromLatin1(ApplicationId));
    QGuiApplication::setQuitOnLastWindowClosed(false);
    TerminationSignals termination([] { QCoreApplication::quit(); });

    // Never destroyed: tasks that sleep when the program ends are its alone, and don't go on.
    static QtMainActor& actor = *new QtMainActor;
    int status = EXIT_SUCCESS;
    {
        Machine machine(actor, console, directories, std::move(x11));
        Agent agent(machine);
        instance.onSecondStart([&agent] { agent.startedAgain(); });
        actor.post([&agent] { agent.launch(); });
        status = QGuiApplication::exec();
    }
    removeLeftRecordings(directories.temporary);
    return status;
}

} // namespace

int main(int argc, char** argv) {
    StandardConsole console;
    try {
        return run(argc, argv, console, XdgDirectories::directories());
    } catch (const PlatformError& error) {
        console.log(QStringLiteral("Talvera can't start: ") + error.message());
        return EXIT_FAILURE;
    }
}
