// SPDX-License-Identifier: MIT
// A process with nothing but the hotkey: it says "ready", then "start" and "end" for each press of the
// default chord.
#include "concurrency/QtMainActor.h"
#include "hotkeys/HotkeyManager.h"
#include "linux/x11/keys/X11EventTapFactory.h"
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
    X11EventTapFactory taps(actor);
    HotkeyManager hotkey(actor, taps, console);
    hotkey.onPressStart = [&console] { console.print("start"); };
    hotkey.onPressEnd = [&console] { console.print("end"); };

    hotkey.install();
    if (hotkey.eventTap() == nullptr)
        return 1;
    console.print("ready");
    return QCoreApplication::exec();
}
