// SPDX-License-Identifier: MIT
#include "linux/keyboard/KeyEventMailbox.h"

#include <utility>

namespace talvera {

void KeyEventMailbox::send(const KeyEvent& event) {
    const std::scoped_lock lock(m_mutex);
    if (m_gaveUp)
        return;
    m_waiting.push_back({event, Clock::now()});
    if (!std::exchange(m_isDelivering, true))
        m_mainActor.post([self = shared_from_this()] { self->deliver(); });
}

std::optional<KeyEventMailbox::Clock::time_point> KeyEventMailbox::deadline() const {
    const std::scoped_lock lock(m_mutex);
    if (m_waiting.empty())
        return std::nullopt;
    return m_waiting.front().sentAt + m_bound;
}

bool KeyEventMailbox::giveUpIfOverdue() {
    const std::scoped_lock lock(m_mutex);
    if (m_waiting.empty() || Clock::now() < m_waiting.front().sentAt + m_bound)
        return false;
    m_waiting.clear();
    m_gaveUp = true;
    return true;
}

bool KeyEventMailbox::hasGivenUp() const {
    const std::scoped_lock lock(m_mutex);
    return m_gaveUp;
}

std::set<VirtualKey> KeyEventMailbox::heardPresses() const {
    const std::scoped_lock lock(m_mutex);
    return m_heardPresses;
}

void KeyEventMailbox::close() {
    m_receiver = nullptr;
}

void KeyEventMailbox::deliver() {
    while (const auto event = next()) {
        if (m_receiver)
            m_receiver(*event);
        if (event->type != KeyEventType::TapDisabledByTimeout)
            markAnswered();
    }
}

std::optional<KeyEvent> KeyEventMailbox::next() {
    const std::scoped_lock lock(m_mutex);
    if (std::exchange(m_gaveUp, false))
        return KeyEvent{.type = KeyEventType::TapDisabledByTimeout};
    if (m_waiting.empty()) {
        m_isDelivering = false;
        return std::nullopt;
    }
    const auto& event = m_waiting.front().event;
    if (isPress(event))
        m_heardPresses.insert(event.keyCode);
    else
        m_heardPresses.erase(event.keyCode);
    return event;
}

void KeyEventMailbox::markAnswered() {
    const std::scoped_lock lock(m_mutex);
    if (!m_gaveUp)
        m_waiting.pop_front();
}

} // namespace talvera
