// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/PanelDesktop.h"

namespace talvera {

/// A desktop that knows no panels: they are ordinary windows, which ask for the keyboard as such.
class NoPanelDesktop final : public PanelDesktop {
public:
    bool isComposited() override { return false; }
    void adopt(QWindow&) override {}
    void setSize(QWindow&, const QSize&) override {}
    void setShape(QWindow&, const std::vector<QRect>&) override {}
    void setShadow(QWindow&, const QMargins&, const std::vector<QRect>&) override {}
    void activate(QWindow& window) override;
};

} // namespace talvera
