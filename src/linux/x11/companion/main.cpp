// SPDX-License-Identifier: MIT
//
// talvera-x11-companion: stands beside the agent, holds the clipboard for it, and outlives it. A paste never
// has to wait for the agent, and the last text can still be pasted when the agent has stalled, ended or been
// killed. If the agent has died while it was typing, the companion releases its keys and puts the keymap
// right. It takes its texts from the socket that it was started with as descriptor 3.

#include "linux/clipboard/endOfSession.h"
#include "linux/support/privateMemory.h"
#include "linux/x11/clipboard/ClipboardService.h"
#include "linux/x11/server/X11Server.h"
#include "linux/x11/typing/TargetBarrier.h"
#include "linux/x11/typing/TypingLedger.h"

#include <cstdlib>

using namespace talvera;

namespace {

constexpr int linkSocket = 3;

void putKeyboardRight(const X11Server& server) {
    const auto connection = server.connect();
    const auto barrierConnection = server.connect();
    if (const auto keyboard = X11Keyboard::open(*connection)) {
        TargetBarrier barrier(*barrierConnection);
        TypingLedger::settle(*keyboard, &barrier);
    }
}

} // namespace

int main() {
    leaveNoCoreFile();
    keepMemoryPrivate(); // it holds what was dictated
    const int end = endOfSession();
    const X11Server server;
    const auto connection = server.connect();
    if (connection->isBroken())
        return EXIT_FAILURE;
    ClipboardService clipboard(*connection, linkSocket);
    if (clipboard.serveLink(end))
        putKeyboardRight(server);
    if (!clipboard.handOver())
        clipboard.serveRest(end);
    return EXIT_SUCCESS;
}
