// SPDX-License-Identifier: MIT
#include "FakeKeyboardLayout.h"
#include "hotkeyAgent.h"
#include "linux/wayland/sway/SwayEventTaps.h"

using namespace talvera;

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    test::FakeKeyboardLayout layout({{VirtualKey::Space, " "}});
    SwayEventTaps taps(qEnvironmentVariable("SWAYSOCK"), layout);
    return test::runHotkeyAgent(taps);
}
