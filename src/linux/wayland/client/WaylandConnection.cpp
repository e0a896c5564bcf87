// SPDX-License-Identifier: MIT
#include "linux/wayland/client/WaylandConnection.h"

#include <algorithm>
#include <cerrno>
#include <vector>

#include <wayland-client.h>

namespace talvera {

namespace {

constexpr std::uint32_t seatVersion = 1; ///< we only name it to others

using Clock = std::chrono::steady_clock;

int millisecondsUntil(Clock::time_point deadline) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
    return static_cast<int>(std::max<std::int64_t>(left.count(), 0));
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

bool WaylandConnection::offers(const wl_interface& interface) const {
    return m_globals.contains(interface.name);
}

void* WaylandConnection::bindAny(const wl_interface& interface, std::uint32_t version) {
    const auto found = m_globals.find(interface.name);
    if (found == m_globals.end() || isBroken())
        return nullptr;
    return ::wl_registry_bind(m_registry, found->second.name, &interface,
                              std::min(version, found->second.version));
}

bool WaylandConnection::fail() {
    m_isBroken = true;
    return false;
}

bool WaylandConnection::flush() {
    const auto deadline = Clock::now() + answerTimeout;
    while (!isBroken()) {
        if (::wl_display_flush(m_display.get()) >= 0)
            return true;
        pollfd writable{::wl_display_get_fd(m_display.get()), POLLOUT, 0};
        const bool isFull = errno == EAGAIN && Clock::now() < deadline;
        if (!isFull || (::poll(&writable, 1, millisecondsUntil(deadline)) < 0 && errno != EINTR))
            return fail();
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
    const auto deadline = Clock::now() + answerTimeout;
    while (!isDone && Clock::now() < deadline && await({}, millisecondsUntil(deadline))) {
    }
    ::wl_callback_destroy(callback);
    return isDone || fail(); // what was asked for can't be told from what comes later any more
}

bool WaylandConnection::await(std::span<pollfd> others, int limit) {
    if (isBroken())
        return false;
    auto* display = m_display.get();
    if (::wl_display_prepare_read(display) != 0) // something has been read already
        return ::wl_display_dispatch_pending(display) >= 0 || fail();
    if (!flush()) {
        ::wl_display_cancel_read(display);
        return false;
    }
    std::vector<pollfd> sources{{::wl_display_get_fd(display), POLLIN, 0}};
    sources.insert(sources.end(), others.begin(), others.end());
    const int ready = ::poll(sources.data(), sources.size(), limit);
    const bool isAnswered = ready > 0 && sources.front().revents != 0;
    if (!isAnswered)
        ::wl_display_cancel_read(display);
    if (ready < 0 && errno != EINTR)
        return fail();
    if (ready > 0)
        std::copy(sources.begin() + 1, sources.end(), others.begin());
    const bool isRead = !isAnswered || ::wl_display_read_events(display) >= 0;
    return (isRead && ::wl_display_dispatch_pending(display) >= 0) || fail();
}

} // namespace talvera
