// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/xcb.h>

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace talvera {

/// What xcb allocates, freed with free().
struct XcbFree {
    void operator()(void* memory) const { std::free(memory); }
};
template <typename T>
using XcbPtr = std::unique_ptr<T, XcbFree>;
using XcbEvent = XcbPtr<xcb_generic_event_t>;

/// A connection to the X server that can't take the process down: a lost server or a refused request is an
/// empty answer, and no answer is waited for longer than a bound. One thread at a time.
class X11Connection {
public:
    static constexpr std::chrono::milliseconds answerTimeout{2000};

    /// Connects to `display`, or to $DISPLAY when it is empty. Null when there is no such server.
    static std::unique_ptr<X11Connection> open(const std::string& display = {});

    X11Connection(const X11Connection&) = delete;
    X11Connection& operator=(const X11Connection&) = delete;
    ~X11Connection();

    xcb_connection_t* get() const { return m_connection; }
    xcb_window_t root() const { return m_screen->root; }
    const xcb_screen_t& screen() const { return *m_screen; }
    int descriptor() const { return xcb_get_file_descriptor(m_connection); }

    /// The server is gone: every further answer is empty.
    bool isBroken() const { return xcb_connection_has_error(m_connection) != 0; }

    void flush() { xcb_flush(m_connection); }

    /// The answer to a request that has one; null on an error, a lost server or a server that doesn't answer.
    /// Several requests sent before the first of their answers is asked for cost one round trip together.
    template <typename Reply, typename Cookie>
    XcbPtr<Reply> reply(Cookie cookie) {
        return XcbPtr<Reply>(static_cast<Reply*>(awaitReply(cookie.sequence)));
    }

    /// Waits until the server has worked off all that was sent before. False when it didn't in time.
    bool roundTrip();

    /// The next event, if one is there already.
    XcbEvent pollEvent() { return XcbEvent(xcb_poll_for_event(m_connection)); }
    /// The next event, or null at `deadline`.
    XcbEvent waitForEvent(std::chrono::steady_clock::time_point deadline);

    /// The atom of that name, made if there is none yet. Asked of the server once for each name.
    xcb_atom_t atom(std::string_view name);

    /// The 32-bit items of a property; empty when the window or the property doesn't exist or has another
    /// format. At most 4096 items.
    std::vector<std::uint32_t> property(xcb_window_t window, xcb_atom_t name);

private:
    X11Connection(xcb_connection_t* connection, xcb_screen_t* screen)
        : m_connection(connection)
        , m_screen(screen) {}

    void* awaitReply(unsigned int sequence);
    /// Waits until the connection can be read; false at `deadline`.
    bool waitReadable(std::chrono::steady_clock::time_point deadline) const;

    xcb_connection_t* m_connection;
    xcb_screen_t* m_screen;
    std::map<std::string, xcb_atom_t, std::less<>> m_atoms;
};

} // namespace talvera
