// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/PointerMonitor.h"

#include <memory>

namespace talvera::test {

/// A mouse that the test presses.
class FakePointerMonitor final : public PointerMonitor {
public:
    Subscription watchPresses(std::function<void(QPoint place)> pressed) override {
        auto observer = std::make_shared<std::function<void(QPoint)>>(std::move(pressed));
        m_pressed = observer;
        return Subscription(std::move(observer));
    }

    bool isWatched() const { return !m_pressed.expired(); }

    void press(QPoint place) {
        if (const auto pressed = m_pressed.lock())
            (*pressed)(place);
    }

private:
    std::weak_ptr<std::function<void(QPoint)>> m_pressed;
};

} // namespace talvera::test
