// SPDX-License-Identifier: MIT
#include "linux/wayland/gnome/shellAccelerators.h"

#include "linux/keyboard/EvdevKeys.h"

#include <array>

namespace talvera {

namespace {

struct Modifier {
    std::uint64_t flag;
    const char* name;
};

constexpr std::array modifiers{Modifier{KeyFlag::Shift, "<Shift>"}, Modifier{KeyFlag::Control, "<Control>"},
                               Modifier{KeyFlag::Option, "<Alt>"}, Modifier{KeyFlag::Command, "<Super>"}};
constexpr std::uint64_t bindable = KeyFlag::Shift | KeyFlag::Control | KeyFlag::Option | KeyFlag::Command;

constexpr int onX = 8;
constexpr int lastKeycode = 0xff;

} // namespace

std::set<ShellAccelerator> acceleratorsOf(const KeyChord& chord) {
    std::set<ShellAccelerator> accelerators;
    if ((chord.modifiers & ~bindable) != 0 || isModifierKey(chord.keyCode))
        return accelerators;
    for (const auto code : EvdevKeys::fromVirtual(chord.keyCode)) {
        const int keycode = static_cast<int>(code) + onX;
        for (std::uint64_t more = 0; keycode <= lastKeycode && more <= bindable; more += KeyFlag::Shift)
            accelerators.insert({chord.modifiers | more, chord.keyCode, keycode});
    }
    return accelerators;
}

QString nameOf(const ShellAccelerator& accelerator) {
    QString name;
    for (const auto& modifier : modifiers) {
        if (accelerator.modifiers & modifier.flag)
            name += QLatin1String(modifier.name);
    }
    return name + QStringLiteral("0x%1").arg(accelerator.keycode, 2, 16, QLatin1Char('0'));
}

} // namespace talvera
