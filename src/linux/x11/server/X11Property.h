// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/xproto.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

namespace talvera {

/// What xcb allocates, freed with free().
struct XcbFree {
    void operator()(void* memory) const { std::free(memory); }
};
template <typename T>
using XcbPtr = std::unique_ptr<T, XcbFree>;

/// A property of a window that has been asked for; X11Connection::read gives the answer.
struct X11PropertyQuestion {
    xcb_get_property_cookie_t cookie;
};

/// What a window's property holds.
class X11Property {
public:
    explicit X11Property(XcbPtr<xcb_get_property_reply_t> answer)
        : m_answer(std::move(answer)) {}

    /// False when the window or the server is gone. A window that lacks the property exists all the same.
    bool windowExists() const { return m_answer != nullptr; }

    /// Its 32-bit items, such as numbers, atoms and windows; empty when it is missing or of another format.
    std::vector<std::uint32_t> items() const;

    /// Its bytes, such as a text, as long as this object lives; empty when it is missing or of another
    /// format.
    std::string_view bytes() const;

private:
    XcbPtr<xcb_get_property_reply_t> m_answer;
};

} // namespace talvera
