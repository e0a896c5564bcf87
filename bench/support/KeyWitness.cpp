// SPDX-License-Identifier: MIT
#include "support/KeyWitness.h"

#include "linux/x11/server/X11Server.h"

#include <algorithm>
#include <stdexcept>

#include <xcb/xinput.h>

namespace talvera::bench {

namespace {

constexpr std::chrono::milliseconds lookRound{200}; // at whether the witness is to end

} // namespace

KeyWitness::KeyWitness()
    : m_connection(X11Server().connect()) {
    if (m_connection->isBroken())
        throw std::runtime_error("no X server");
    m_connection->reply<xcb_input_xi_query_version_reply_t>(
        xcb_input_xi_query_version(m_connection->get(), 2, 1));
    const struct {
        xcb_input_event_mask_t keyboards{XCB_INPUT_DEVICE_ALL_MASTER, 1};
        std::uint32_t events =
            XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE;
    } mask;
    xcb_input_xi_select_events(m_connection->get(), m_connection->root(), 1, &mask.keyboards);
    m_devices.load(*m_connection);
    m_connection->roundTrip();
    m_thread = std::thread([this] { run(); });
}

KeyWitness::~KeyWitness() {
    m_isEnding = true;
    m_thread.join();
}

void KeyWitness::run() {
    while (!m_isEnding && !m_connection->isBroken()) {
        const auto event = m_connection->waitForEvent(Clock::now() + lookRound);
        if (!event || (event->response_type & 0x7F) != XCB_GE_GENERIC)
            continue;
        const auto* raw = reinterpret_cast<const xcb_input_raw_key_press_event_t*>(event.get());
        if (raw->event_type != XCB_INPUT_RAW_KEY_PRESS && raw->event_type != XCB_INPUT_RAW_KEY_RELEASE)
            continue;
        const std::scoped_lock lock(m_mutex);
        m_keys.push_back({Clock::now(), XKeycode(raw->detail), raw->event_type == XCB_INPUT_RAW_KEY_PRESS,
                          m_devices.isPosted(raw->sourceid)});
        m_changed.notify_all();
    }
}

void KeyWitness::forget() {
    const std::scoped_lock lock(m_mutex);
    m_keys.clear();
}

std::vector<KeyWitness::Key> KeyWitness::seen() const {
    const std::scoped_lock lock(m_mutex);
    return m_keys;
}

KeyWitness::Key KeyWitness::await(const std::function<bool(const Key&)>& isWanted) {
    std::unique_lock lock(m_mutex);
    auto found = m_keys.end();
    const bool came = m_changed.wait_for(lock, patience, [&] {
        found = std::find_if(m_keys.begin(), m_keys.end(), isWanted);
        return found != m_keys.end();
    });
    if (!came)
        throw std::runtime_error("waited in vain for a key");
    return *found;
}

void KeyWitness::awaitQuiet(std::chrono::milliseconds length) {
    std::unique_lock lock(m_mutex);
    for (auto count = m_keys.size() + 1; count != m_keys.size();) {
        count = m_keys.size();
        m_changed.wait_for(lock, length, [&] { return m_keys.size() != count; });
    }
}

} // namespace talvera::bench
