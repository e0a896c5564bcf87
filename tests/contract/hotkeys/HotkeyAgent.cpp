// SPDX-License-Identifier: MIT
// A process with nothing but the two hotkeys: it says "ready", then "start" and "end" for each press of the
// default chord, and "toggle" each time Ctrl+Alt+Super+T is struck.
#include "concurrency/QtMainActor.h"
#include "hotkeys/HotkeyManager.h"
#include "hotkeys/TranslateToggleHotkey.h"
#include "linux/x11/keys/X11EventTapFactory.h"
#include "linux/x11/server/X11Server.h"
#include "platform/system/Console.h"

#include <QCoreApplication>

#include <cstdio>

using namespace talvera;

namespace {

class StandardConsole final : public Console {
public:
    void print(const QString& line) override { std::puts(qUtf8Printable(line)); }
    void log(const QString& line) override { std::fprintf(stderr, "%s\n", qUtf8Printable(line)); }
};

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    QtMainActor actor;
    StandardConsole console;
    X11EventTapFactory taps(actor, X11Server());
    HotkeyManager hotkey(actor, taps, console);
    hotkey.onPressStart = [&console] { console.print("start"); };
    hotkey.onPressEnd = [&console] { console.print("end"); };

    TranslateToggleHotkey toggle(actor, taps, console);
    toggle.onTrigger = [&console] { console.print("toggle"); };

    hotkey.install();
    toggle.setBinding(
        HotkeyBinding::chord(KeyFlag::Control | KeyFlag::Option | KeyFlag::Command, VirtualKey::T));
    toggle.install();
    if (hotkey.eventTap() == nullptr || toggle.eventTap() == nullptr)
        return 1;
    console.print("ready");
    return QCoreApplication::exec();
}
