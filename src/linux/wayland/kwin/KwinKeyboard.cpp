// SPDX-License-Identifier: MIT
#include "linux/wayland/kwin/KwinKeyboard.h"

namespace talvera {

using Clock = std::chrono::steady_clock;

std::shared_ptr<FakeKeyboard> KwinKeyboard::get() {
    const std::scoped_lock lock(m_mutex);
    if (m_keyboard && !m_keyboard->isBroken())
        return m_keyboard;
    const auto now = Clock::now();
    if (m_asked != Clock::time_point() && now - m_asked < std::chrono::seconds(1))
        return nullptr;
    m_asked = now;
    m_keyboard = FakeKeyboard::open(std::make_unique<WaylandConnection>());
    return m_keyboard;
}

} // namespace talvera
