// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/SettingsPanels.h"

#include <functional>
#include <vector>

namespace talvera::test {

/// Remembers which panels were opened.
class FakeSettingsPanels final : public SettingsPanels {
public:
    std::vector<Panel> opened;
    std::function<void(Panel)> onOpen;
    bool hasPanels = true;

    bool open(Panel panel) override {
        if (!hasPanels)
            return false;
        opened.push_back(panel);
        if (onOpen)
            onOpen(panel);
        return true;
    }
};

} // namespace talvera::test
