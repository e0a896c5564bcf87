// SPDX-License-Identifier: MIT
#pragma once

#include "platform/SettingsPanels.h"

#include <functional>
#include <vector>

namespace talvera::test {

/// Remembers which panels were opened.
class FakeSettingsPanels final : public SettingsPanels {
public:
    std::vector<Panel> opened;
    std::function<void(Panel)> onOpen;

    void open(Panel panel) override {
        opened.push_back(panel);
        if (onOpen)
            onOpen(panel);
    }
};

} // namespace talvera::test
