// SPDX-License-Identifier: MIT
#pragma once

#include "shell/hud/HUDPanel.h"

namespace talvera::test {

/// A panel that never comes on screen.
class UnseenHUDPanel final : public HUDPanel {
public:
    bool isVisible() const override { return false; }
    void fadeIn() override {}
    void fadeOut(std::function<void()> completion) override { completion(); }
    void withdraw() override {}
    void setIgnoresMouseEvents(bool) override {}
};

} // namespace talvera::test
