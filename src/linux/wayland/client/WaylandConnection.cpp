// SPDX-License-Identifier: MIT
#include "linux/wayland/client/WaylandConnection.h"

#include <algorithm>
#include <cerrno>

#include <poll.h>
#include <wayland-client.h>

namespace talvera {

namespace {

constexpr std::uint32_t seatVersion = 1; ///< we only name it to others

using Clock = std::chrono::steady_clock;

/// Waits for `events` on the descriptor; false at the deadline or on an error.
bool awaitDescriptor(int descriptor, short events, Clock::time_point deadline) {
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
        pollfd wanted{descriptor, events, 0};
        const int ready = ::poll(&wanted, 1, static_cast<int>(std::max<long long>(left, 0)));
        if (ready > 0)
            return (wanted.revents & events) != 0;
        if (ready == 0 || errno != EINTR)
            return false;
    }
}

} // namespace

WaylandConnection::WaylandConnection(const std::string& display)
    : m_display(::wl_display_connect(display.empty() ? nullptr : display.c_str())) {
    if (!m_display) {
        m_isBroken = true;
        return;
    }
    static constexpr wl_registry_listener listener{
        .global =
            [](void* self, wl_registry*, std::uint32_t name, const char* interface, std::uint32_t version) {
                static_cast<WaylandConnection*>(self)->m_globals.emplace(interface, Global{name, version});
            },
        .global_remove = [](void*, wl_registry*, std::uint32_t) {}};
    m_registry = ::wl_display_get_registry(m_display.get());
    ::wl_registry_add_listener(m_registry, &listener, this);
    if (roundTrip())
        m_seat = bind<wl_seat>(wl_seat_interface, seatVersion);
}

WaylandConnection::~WaylandConnection() {
    if (m_seat != nullptr)
        ::wl_seat_destroy(m_seat);
    if (m_registry != nullptr)
        ::wl_registry_destroy(m_registry);
}

void WaylandConnection::Disconnect::operator()(wl_display* display) const {
    ::wl_display_disconnect(display);
}

bool WaylandConnection::isBroken() const {
    return m_isBroken || ::wl_display_get_error(m_display.get()) != 0;
}

void* WaylandConnection::bindAny(const wl_interface& interface, std::uint32_t version) {
    const auto found = m_globals.find(interface.name);
    if (found == m_globals.end() || isBroken())
        return nullptr;
    return ::wl_registry_bind(m_registry, found->second.name, &interface,
                              std::min(version, found->second.version));
}

bool WaylandConnection::flush() {
    const auto deadline = Clock::now() + answerTimeout;
    while (!isBroken()) {
        if (::wl_display_flush(m_display.get()) >= 0)
            return true;
        if (errno != EAGAIN || !awaitDescriptor(::wl_display_get_fd(m_display.get()), POLLOUT, deadline))
            m_isBroken = true;
    }
    return false;
}

bool WaylandConnection::roundTrip() {
    if (isBroken())
        return false;
    bool isDone = false;
    static constexpr wl_callback_listener listener{
        .done = [](void* done, wl_callback*, std::uint32_t) { *static_cast<bool*>(done) = true; }};
    auto* callback = ::wl_display_sync(m_display.get());
    ::wl_callback_add_listener(callback, &listener, &isDone);
    m_isBroken = !dispatchUntil(isDone); // an answer that is still to come would find nobody any more
    ::wl_callback_destroy(callback);
    return isDone;
}

bool WaylandConnection::dispatchUntil(const bool& isDone) {
    const auto deadline = Clock::now() + answerTimeout;
    auto* display = m_display.get();
    while (!isDone) {
        while (::wl_display_prepare_read(display) != 0) {
            if (::wl_display_dispatch_pending(display) < 0)
                return false;
        }
        if (isDone || !flush() || !awaitDescriptor(::wl_display_get_fd(display), POLLIN, deadline)) {
            ::wl_display_cancel_read(display);
            return isDone;
        }
        if (::wl_display_read_events(display) < 0 || ::wl_display_dispatch_pending(display) < 0)
            return false;
    }
    return true;
}

} // namespace talvera
