// SPDX-License-Identifier: MIT
#include "OnGnome.h"

#include <algorithm>
#include <stdexcept>

namespace talvera::test {

namespace {

const QStringList chord{"<Control><Alt>0x41", "<Shift><Control><Alt>0x41", "<Control><Alt><Super>0x41",
                        "<Shift><Control><Alt><Super>0x41"};

} // namespace

unsigned grabHotkey(const ShellBus& bus, const QString& accelerator) {
    const auto answer = bus.ask("Grab", {accelerator});
    if (!answer)
        throw std::runtime_error("the extension doesn't answer");
    return answer->value(0).toUInt();
}

bool isHotkeyKept() {
    const ShellBus other;
    return std::ranges::all_of(chord, [&other](const QString& each) { return grabHotkey(other, each) == 0; });
}

void switchExtension(bool isOn) {
    outputOfProgram(
        "gdbus",
        {"call", "--session", "--dest", "org.gnome.Shell", "--object-path", "/org/gnome/Shell", "--method",
         isOn ? "org.gnome.Shell.Extensions.EnableExtension" : "org.gnome.Shell.Extensions.DisableExtension",
         "talvera@home.arpa"});
}

void compositor::bindHotkey(AgentHome&) {}

void compositor::turnTo(pid_t process) {
    const ShellBus user;
    const auto answer = user.ask("Activate", {static_cast<int>(process)});
    if (!answer || !answer->value(0).toBool())
        throw std::runtime_error("the user doesn't find the window");
}

void compositor::letPressKeys(const QString&) {}

bool compositor::keepsKeysOfTheDead() {
    const ShellBus other;
    return std::ranges::any_of(chord, [&other](const QString& each) { return grabHotkey(other, each) == 0; });
}

} // namespace talvera::test
