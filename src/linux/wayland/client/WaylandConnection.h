// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>

#include <poll.h>

struct wl_display;
struct wl_interface;
struct wl_registry;
struct wl_seat;

namespace talvera {

/// A connection to a Wayland compositor that can't take the process down: one that is gone, refuses a request
/// or doesn't answer in time is a broken connection, and a broken one does nothing any more. One thread at a
/// time.
class WaylandConnection {
public:
    static constexpr std::chrono::milliseconds answerTimeout{2000};

    /// To the compositor of that name or path; to the one in $WAYLAND_DISPLAY when it is empty. Knows on
    /// return what the compositor offers.
    explicit WaylandConnection(const std::string& display = {});
    ~WaylandConnection();
    WaylandConnection(const WaylandConnection&) = delete;
    WaylandConnection& operator=(const WaylandConnection&) = delete;

    bool isBroken() const;
    wl_display* get() const { return m_display.get(); }

    /// The seat with the user's keyboard; null when there is none.
    wl_seat* seat() const { return m_seat; }

    bool offers(const wl_interface& interface) const;

    /// The compositor's object of that kind, at most of that version; null when it offers none. The caller
    /// destroys it.
    template <typename Proxy>
    Proxy* bind(const wl_interface& interface, std::uint32_t version) {
        return static_cast<Proxy*>(bindAny(interface, version));
    }

    /// Sends what was asked for. False when the compositor has gone or doesn't read.
    bool flush();

    /// Waits until the compositor has worked off all that was sent before. False when it didn't in time.
    bool roundTrip();

    /// Sends what was asked for, waits until the compositor says something or one of `others` is ready, and
    /// tells the listeners. `limit` is in milliseconds, and negative where there is none. False when the
    /// compositor has gone.
    bool await(std::span<pollfd> others, int limit);

private:
    struct Disconnect {
        void operator()(wl_display* display) const;
    };
    struct Global {
        std::uint32_t name = 0;
        std::uint32_t version = 0;
    };

    void* bindAny(const wl_interface& interface, std::uint32_t version);
    bool fail();

    std::unique_ptr<wl_display, Disconnect> m_display;
    wl_registry* m_registry = nullptr;
    wl_seat* m_seat = nullptr;
    std::map<std::string, Global, std::less<>> m_globals; ///< by interface, the first of each
    bool m_isBroken = false;
};

} // namespace talvera
