// SPDX-License-Identifier: MIT
//
// talvera-wayland-companion: stands beside the agent, holds the clipboard for it, and outlives it. A paste
// never has to wait for the agent, and the last text can still be pasted when the agent has stalled, ended or
// been killed. It takes its texts from the socket that it was started with as descriptor 3.

#include "linux/clipboard/endOfSession.h"
#include "linux/support/privateMemory.h"
#include "linux/wayland/client/WaylandConnection.h"
#include "linux/wayland/clipboard/WaylandClipboardService.h"

#include <cstdlib>

using namespace talvera;

namespace {

constexpr int linkSocket = 3;

} // namespace

int main() {
    leaveNoCoreFile();
    keepMemoryPrivate(); // it holds what was dictated
    const int end = endOfSession();
    WaylandConnection connection;
    const auto owner = ClipboardOwner::open(connection);
    if (!owner)
        return EXIT_FAILURE;
    WaylandClipboardService clipboard(connection, *owner, linkSocket);
    clipboard.serveLink(end);
    clipboard.serveRest(end);
    return EXIT_SUCCESS;
}
