// SPDX-License-Identifier: MIT
#pragma once

#include "linux/wayland/kwin/FakeKeyboard.h"

#include <chrono>
#include <memory>
#include <mutex>

namespace talvera {

/// The keyboard that KWin lends us. It is asked for again while there is none: KWin hears of a desktop file
/// some time after it has been installed, and may be restarted. Any thread.
class KwinKeyboard {
public:
    /// Null where KWin lets us press no keys, or doesn't answer. Asks it once a second at most.
    std::shared_ptr<FakeKeyboard> get();

private:
    std::mutex m_mutex; // guards what follows
    std::shared_ptr<FakeKeyboard> m_keyboard;
    std::chrono::steady_clock::time_point m_asked{};
};

} // namespace talvera
