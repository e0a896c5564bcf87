// SPDX-License-Identifier: MIT
#pragma once

#include "platform/keyboard/EventTap.h"

#include <QByteArray>
#include <QJsonObject>
#include <QString>

#include <compare>
#include <cstdint>
#include <optional>
#include <set>
#include <vector>

namespace talvera {

/// A binding that we have at sway: of a key by its X keycode, with exactly these modifiers.
struct SwayBinding {
    std::uint64_t modifiers = 0; ///< KeyFlag bits
    VirtualKey key = {};
    int keycode = 0;
    bool isRelease = false; ///< tells of the end of a press

    auto operator<=>(const SwayBinding&) const = default;
};

using SwayBindings = std::set<SwayBinding>;

/// The X keycodes of a key; none for one that can't be bound with others.
std::vector<int> keycodesOf(VirtualKey key);

/// All bindings that a chord needs, since sway takes other modifiers than those named for another chord.
/// `isHeld`: its end is told, too. None for a chord that sway has no name for.
SwayBindings bindingsOf(const KeyChord& chord, bool isHeld);

/// The commands that make these bindings, and those that take them away.
QByteArray commandsToBind(const SwayBindings& bindings);
QByteArray commandsToUnbind(const SwayBindings& bindings);

/// These commands as carried out in sway's first mode, to which bindings belong that are made in it, and then
/// the way back to `mode`, in which the user is.
QByteArray inFirstMode(const QByteArray& commands, const QString& mode);

/// The event of one of our bindings as sway tells it; nothing if that is of another one.
std::optional<KeyEvent> keyEventOf(const QJsonObject& bindingEvent);

} // namespace talvera
