// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/server/X11Property.h"

#include <xcb/xcb.h>

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace talvera {

using XcbEvent = XcbPtr<xcb_generic_event_t>;

/// A connection to the X server that can't take the process down: a lost server or a refused request is an
/// empty answer, and no answer is waited for longer than a bound. X11Server opens it. One thread at a time.
class X11Connection {
public:
    static constexpr std::chrono::milliseconds answerTimeout{2000};

    X11Connection(const X11Connection&) = delete;
    X11Connection& operator=(const X11Connection&) = delete;
    ~X11Connection();

    xcb_connection_t* get() const { return m_connection; }
    xcb_window_t root() const { return m_screen->root; }
    const xcb_screen_t& screen() const { return *m_screen; }
    const xcb_setup_t& setup() const { return *m_setup; }

    /// Readable when the server has told something; -1 when there has never been a server.
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
    XcbEvent pollEvent();
    /// The next event, or null at `deadline`.
    XcbEvent waitForEvent(std::chrono::steady_clock::time_point deadline);
    /// The next event that is `wanted`, or null at `deadline`. The others stay, in their order.
    XcbEvent waitForEvent(const std::function<bool(const xcb_generic_event_t&)>& wanted,
                          std::chrono::steady_clock::time_point deadline);

    /// Called when events have been read while something else was waited for: they are there to be polled,
    /// and the descriptor doesn't announce them any more. X11EventPump looks after that.
    std::function<void()> onEventsKept;

    /// The atom of that name, made if there is none yet. Asked of the server once for each name.
    xcb_atom_t atom(std::string_view name);

    /// What the server has told of an extension, such as xcb_shape_id; null when it lacks it. Asked once.
    const xcb_query_extension_reply_t* extension(xcb_extension_t& extension);

    /// The window that owns the selection of that name; none when it has no owner.
    xcb_window_t selectionOwner(xcb_atom_t selection);

    /// Asks for a property. Several asked before the first of their answers is read cost one round trip
    /// together. `most` is in units of four bytes; what is longer is cut.
    X11PropertyQuestion askProperty(xcb_window_t window, std::string_view name, std::uint32_t most);
    X11Property read(X11PropertyQuestion question);

    /// The 32-bit items of a property; empty when the window or the property doesn't exist or has another
    /// format. At most 4096 items.
    std::vector<std::uint32_t> property(xcb_window_t window, xcb_atom_t name);

private:
    friend class X11Server;
    X11Connection(xcb_connection_t* connection, const xcb_setup_t* setup, const xcb_screen_t* screen)
        : m_connection(connection)
        , m_setup(setup)
        , m_screen(screen) {}

    void* awaitReply(unsigned int sequence);
    /// Waits until the connection can be read; false at `deadline`.
    bool waitReadable(std::chrono::steady_clock::time_point deadline) const;
    void keepEvents();

    xcb_connection_t* m_connection;
    const xcb_setup_t* m_setup;
    const xcb_screen_t* m_screen;
    std::deque<XcbEvent> m_kept; ///< read already, the oldest first
    std::map<std::string, xcb_atom_t, std::less<>> m_atoms;
};

} // namespace talvera
