// SPDX-License-Identifier: MIT
#include "FakeKeyboardLayout.h"
#include "hotkeyAgent.h"
#include "linux/wayland/kwin/KwinEventTaps.h"

using namespace talvera;

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    test::FakeKeyboardLayout layout({{VirtualKey::Space, " "}});
    KwinEventTaps taps(layout, std::make_shared<KwinGuard>());
    return test::runHotkeyAgent(taps);
}
