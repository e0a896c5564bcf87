// SPDX-License-Identifier: MIT
#include "linux/x11/clipboard/X11Pasteboard.h"

#include "linux/x11/clipboard/ClipboardService.h"

#include <memory>
#include <utility>

namespace talvera {

namespace {

/// Nothing of our environment but what it takes to reach the X server.
std::unique_ptr<ClipboardHolder> startCompanion(const std::string& program, const X11Server& server) {
    auto environment = environmentOf({"XAUTHORITY", "HOME"});
    const auto display =
        server.display().empty() ? environmentOf({"DISPLAY"}) : std::vector{"DISPLAY=" + server.display()};
    environment.insert(environment.end(), display.begin(), display.end());
    return CompanionProcess::start(program, std::move(environment));
}

std::unique_ptr<ClipboardHolder> startThread(const X11Server& server) {
    const std::shared_ptr<X11Connection> connection = server.connect();
    if (connection->isBroken())
        return nullptr;
    return ClipboardThread::start(
        [connection](int socket) { ClipboardService(*connection, socket).serveLink(); });
}

} // namespace

X11Pasteboard::X11Pasteboard(Console& console, std::string companionProgram, X11Server server)
    : CompanionPasteboard(console, {.startCompanion = [program = std::move(companionProgram),
                                                       server] { return startCompanion(program, server); },
                                    .startThread = [server] { return startThread(server); },
                                    .marked = [] { return Marked::Taken; }}) {
} // the companion finds out itself

} // namespace talvera
