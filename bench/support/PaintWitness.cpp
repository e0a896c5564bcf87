// SPDX-License-Identifier: MIT
#include "support/PaintWitness.h"

#include "linux/x11/server/X11Server.h"

#include <stdexcept>

namespace talvera::bench {

namespace {

constexpr std::chrono::milliseconds lookRound{200}; // at whether the witness is to end
constexpr std::uint8_t typeMask = 0x7F;             // the other bit tells events that programs made up

} // namespace

PaintWitness::PaintWitness()
    : m_connection(X11Server().connect()) {
    if (m_connection->isBroken())
        throw std::runtime_error("no X server");
    auto* const x = m_connection->get();
    const auto* damage = xcb_get_extension_data(x, &xcb_damage_id);
    if (!damage || !damage->present)
        throw std::runtime_error("the X server doesn't tell of paint");
    m_damageEvent = static_cast<std::uint8_t>(damage->first_event + XCB_DAMAGE_NOTIFY);
    m_connection->reply<xcb_damage_query_version_reply_t>(xcb_damage_query_version(x, 1, 1));
    const std::uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(x, m_connection->root(), XCB_CW_EVENT_MASK, &events);
    m_connection->roundTrip();
    m_thread = std::thread([this] { run(); });
}

PaintWitness::~PaintWitness() {
    m_isEnding = true;
    m_thread.join();
}

void PaintWitness::run() {
    while (!m_isEnding && !m_connection->isBroken()) {
        const auto event = m_connection->waitForEvent(Clock::now() + lookRound);
        if (!event)
            continue;
        const auto type = static_cast<std::uint8_t>(event->response_type & typeMask);
        if (type == XCB_CREATE_NOTIFY) // before a window manager puts it into a frame
            watch(reinterpret_cast<const xcb_create_notify_event_t*>(event.get())->window);
        else if (type == XCB_MAP_NOTIFY)
            watch(reinterpret_cast<const xcb_map_notify_event_t*>(event.get())->window);
        else if (type == XCB_DESTROY_NOTIFY)
            m_watched.erase(reinterpret_cast<const xcb_destroy_notify_event_t*>(event.get())->window);
        else if (type == m_damageEvent)
            onPainted(reinterpret_cast<const xcb_damage_notify_event_t*>(event.get())->drawable);
    }
}

void PaintWitness::watch(xcb_window_t window) {
    if (m_watched.contains(window))
        return;
    const auto damage = xcb_generate_id(m_connection->get());
    xcb_damage_create(m_connection->get(), damage, window, XCB_DAMAGE_REPORT_LEVEL_NON_EMPTY);
    m_connection->flush();
    m_watched[window] = damage;
}

void PaintWitness::onPainted(xcb_window_t window) {
    const auto now = Clock::now();
    const auto found = m_watched.find(window);
    if (found == m_watched.end())
        return;
    xcb_damage_destroy(m_connection->get(), found->second);
    m_connection->flush();
    m_watched.erase(found);
    const auto process = processOf(window);
    const std::scoped_lock lock(m_mutex);
    if (!m_painted)
        m_painted = now;
    m_paintedBy.try_emplace(process, now);
    m_changed.notify_all();
}

/// 0 when the window doesn't tell.
pid_t PaintWitness::processOf(xcb_window_t window) {
    const auto told = m_connection->property(window, m_connection->atom("_NET_WM_PID"));
    return told.empty() ? 0 : static_cast<pid_t>(told.front());
}

void PaintWitness::forget() {
    const std::scoped_lock lock(m_mutex);
    m_painted.reset();
    m_paintedBy.clear();
}

PaintWitness::Clock::time_point PaintWitness::await() {
    std::unique_lock lock(m_mutex);
    if (!m_changed.wait_for(lock, patience, [this] { return m_painted.has_value(); }))
        throw std::runtime_error("no window has come up");
    return *m_painted;
}

PaintWitness::Clock::time_point PaintWitness::awaitOf(pid_t process) {
    std::unique_lock lock(m_mutex);
    if (!m_changed.wait_for(lock, patience, [&] { return m_paintedBy.contains(process); }))
        throw std::runtime_error("no window of the program has come up");
    return m_paintedBy.at(process);
}

} // namespace talvera::bench
