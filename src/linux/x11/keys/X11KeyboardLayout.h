// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/server/X11Server.h"
#include "platform/keyboard/KeyboardLayout.h"

#include <memory>

struct xkb_context;

namespace talvera {

/// The layout of the X session, asked for anew each time: a call costs a few round trips to the server. No
/// key has a character while the server doesn't answer.
class X11KeyboardLayout final : public KeyboardLayout {
public:
    explicit X11KeyboardLayout(const X11Server& server);
    X11KeyboardLayout(const X11KeyboardLayout&) = delete;
    X11KeyboardLayout& operator=(const X11KeyboardLayout&) = delete;
    ~X11KeyboardLayout() override;

    /// Keys of the keypad write what they do with Num Lock on.
    std::optional<QString> character(VirtualKey key) override;

private:
    const std::unique_ptr<X11Connection> m_connection;
    std::unique_ptr<xkb_context, void (*)(xkb_context*)> m_context;
};

} // namespace talvera
