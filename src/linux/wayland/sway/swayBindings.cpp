// SPDX-License-Identifier: MIT
#include "linux/wayland/sway/swayBindings.h"

#include "linux/keyboard/EvdevKeys.h"

#include <QByteArrayList>
#include <QJsonArray>

#include <algorithm>
#include <array>

namespace talvera {

namespace {

struct Modifier {
    std::uint64_t flag;
    const char* name;      ///< in a binding
    const char* eventName; ///< in an event
};

constexpr std::array modifiers{
    Modifier{KeyFlag::Shift, "Shift", "Shift"}, Modifier{KeyFlag::Control, "Ctrl", "Control"},
    Modifier{KeyFlag::Option, "Mod1", "Mod1"}, Modifier{KeyFlag::Command, "Mod4", "Mod4"}};
constexpr std::uint64_t bindable = KeyFlag::Shift | KeyFlag::Control | KeyFlag::Option | KeyFlag::Command;

constexpr auto downCommand = "nop talvera-down";
constexpr auto upCommand = "nop talvera-up";

QByteArray nameOf(const SwayBinding& binding) {
    QByteArray name;
    for (const auto& modifier : modifiers) {
        if (binding.modifiers & modifier.flag)
            name += QByteArray(modifier.name) + '+';
    }
    return name + QByteArray::number(binding.keycode);
}

/// A press goes to the screen locker or to a program that wants all keys for itself, when there is one; the
/// end of a press that we have been told of is always ours.
const char* optionsOf(const SwayBinding& binding) {
    return binding.isRelease ? "--release --locked --inhibited " : "";
}

std::uint64_t flagsOf(const QJsonObject& binding) {
    const auto held = binding.value(QLatin1String("event_state_mask")).toArray();
    std::uint64_t flags = 0;
    for (const auto& modifier : modifiers) {
        if (held.contains(QLatin1String(modifier.eventName)))
            flags |= modifier.flag;
    }
    return flags;
}

} // namespace

std::vector<int> keycodesOf(VirtualKey key) {
    constexpr int onX = 8;
    std::vector<int> keycodes;
    if (isModifierKey(key))
        return keycodes;
    for (const auto code : EvdevKeys::fromVirtual(key))
        keycodes.push_back(static_cast<int>(code) + onX);
    return keycodes;
}

SwayBindings bindingsOf(const KeyChord& chord, bool isHeld) {
    SwayBindings bindings;
    if ((chord.modifiers & ~bindable) != 0)
        return bindings;
    for (const auto keycode : keycodesOf(chord.keyCode)) {
        for (std::uint64_t more = 0; more <= bindable; more += KeyFlag::Shift) {
            SwayBinding binding{
                .modifiers = chord.modifiers | more, .key = chord.keyCode, .keycode = keycode};
            bindings.insert(binding);
            binding.isRelease = true;
            if (isHeld)
                bindings.insert(binding);
        }
    }
    return bindings;
}

QByteArray commandsToBind(const SwayBindings& bindings) {
    QByteArrayList commands;
    for (const auto& binding : bindings) {
        const QByteArray told = binding.isRelease ? upCommand : downCommand;
        commands << "bindcode --no-repeat " + QByteArray(optionsOf(binding)) + nameOf(binding) + ' ' + told +
                        ' ' + QByteArray::number(static_cast<int>(binding.key));
    }
    return commands.join("; ");
}

QByteArray commandsToUnbind(const SwayBindings& bindings) {
    QByteArrayList commands;
    for (const auto& binding : bindings)
        commands << "unbindcode " + QByteArray(optionsOf(binding)) + nameOf(binding);
    return commands.join("; ");
}

/// In a quoted name sway ends the quotation at a quotation mark, takes two dollars for one, and leaves a
/// backslash as it is, with what comes behind it: a name with a backslash before one of these two isn't found
/// again, and the user is in the first mode then.
QByteArray inFirstMode(const QByteArray& commands, const QString& mode) {
    auto name = mode.toUtf8();
    name.replace('"', R"("'"'")").replace('$', "$$");
    return "mode default; " + commands + "; mode \"" + name + '"';
}

std::optional<KeyEvent> keyEventOf(const QJsonObject& bindingEvent) {
    const auto binding = bindingEvent.value(QLatin1String("binding")).toObject();
    const auto command = binding.value(QLatin1String("command")).toString().toLatin1();
    const auto key = command.mid(command.lastIndexOf(' ') + 1);
    const auto told = command.chopped(std::min(key.size() + 1, command.size()));
    if (told != downCommand && told != upCommand)
        return std::nullopt;
    return KeyEvent{.type = told == downCommand ? KeyEventType::KeyDown : KeyEventType::KeyUp,
                    .keyCode = VirtualKey(key.toUShort()),
                    .flags = flagsOf(binding)};
}

} // namespace talvera
