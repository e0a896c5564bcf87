// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/server/X11Connection.h"

#include <memory>
#include <string>
#include <utility>

namespace talvera {

/// The X server of a session, where connections are opened. Any thread.
class X11Server {
public:
    /// The server of that name; of the one in $DISPLAY when it is empty.
    explicit X11Server(std::string display = {})
        : m_display(std::move(display)) {}

    /// Empty for the one in $DISPLAY.
    const std::string& display() const { return m_display; }

    /// A connection of the caller's own. Never null: it is broken when the server has gone, or never was.
    std::unique_ptr<X11Connection> connect() const;

private:
    std::string m_display;
};

} // namespace talvera
