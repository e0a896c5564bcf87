// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <vector>

/// What the hands of the person at the desktop do. Each call returns when the display server has worked the
/// event off, and throws std::runtime_error when it can't.
class Hands {
public:
    Hands() = default;
    Hands(const Hands&) = delete;
    Hands& operator=(const Hands&) = delete;
    virtual ~Hands() = default;

    /// Keyboard 0 or 1; `keycode` is X's.
    virtual void key(int keyboard, int keycode, bool down) = 0;
    virtual void move(int dx, int dy) = 0;
    virtual void button(int button, bool down) = 0;

    /// Readable when the display server has something to say.
    virtual std::vector<int> descriptors() const = 0;
    /// Hears it. False when the server has gone.
    virtual bool listen() = 0;
};

/// On devices of an X server; `paths` are those of their sockets: two keyboards and a pointer.
std::unique_ptr<Hands> handsOnX(const std::vector<std::string>& paths);

/// On keyboards in the seat of the compositor at $WAYLAND_DISPLAY, with $RIG_LAYOUT and $RIG_LAYOUT_OPTIONS.
/// There is no mouse.
std::unique_ptr<Hands> handsOnWayland();

/// The same of KWin, which has one keyboard for all programs that press keys, with the user's layout;
/// `keyboard` makes no difference. There is a mouse.
std::unique_ptr<Hands> handsOnKwin();

/// The same of GNOME Shell, with the user's layout; keys that both keyboards hold are down once.
std::unique_ptr<Hands> handsOnGnome();
