// SPDX-License-Identifier: MIT
// A process with nothing but a tap on Ctrl+Alt+Space: it says "ready", then "start" and "end" for each press.
#include "FakeKeyboardLayout.h"
#include "linux/wayland/sway/SwayEventTaps.h"

#include <QCoreApplication>

#include <cstdio>

using namespace talvera;

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    test::FakeKeyboardLayout layout({{VirtualKey::Space, " "}});
    SwayEventTaps taps(qEnvironmentVariable("SWAYSOCK"), layout);
    const auto tap = taps.create([](const KeyEvent& event) {
        std::puts(isPress(event) ? "start" : "end");
        return Verdict::Swallow;
    });
    if (!tap)
        return 1;
    tap->setEnabled(true);
    if (tap->watchChord({KeyFlag::Control | KeyFlag::Option, VirtualKey::Space}) != WatchResult::Watching)
        return 1;
    std::puts("ready");
    return QCoreApplication::exec();
}
