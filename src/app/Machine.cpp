// SPDX-License-Identifier: MIT
#include "app/Machine.h"

#include "views/controls/SymbolProvider.h"

#include <utility>

namespace talvera {

Machine::Machine(QtMainActor& mainActor, StandardConsole& output, Directories places,
                 std::unique_ptr<X11Connection> connection)
    : actor(mainActor)
    , console(output)
    , directories(std::move(places))
    , x11(std::move(connection))
    , preferences(directories.configuration, files, actor, preferenceWriter, console)
    , pasteboard(console, (directories.resources + QStringLiteral("/talvera-x11-companion")).toStdString())
    , statusItem(actor, traySymbolImage, directories.resources + QStringLiteral("/icons")) {
    accessibility.enableForSession();
}

void Machine::endWork() {
    processes.endAll();
    background.finish();
}

} // namespace talvera
