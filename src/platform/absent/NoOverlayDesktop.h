// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/OverlayDesktop.h"

namespace talvera {

/// A desktop over which nothing can float. Windows stay the ordinary ones that they are.
class NoOverlayDesktop final : public OverlayDesktop {
public:
    std::optional<QRect> workArea() override { return std::nullopt; }
    std::unique_ptr<OverlayWindow> adopt(QWindow&) override { return std::make_unique<Window>(); }

private:
    class Window final : public OverlayWindow {
    public:
        void setTakesClicks(bool) override {}
        void setShape(const std::vector<QRect>&) override {}
        void stayOnTop(bool) override {}
    };
};

} // namespace talvera
