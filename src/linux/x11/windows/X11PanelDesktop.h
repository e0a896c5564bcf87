// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/server/X11Connection.h"
#include "platform/desktop/PanelDesktop.h"
#include "platform/desktop/PointerMonitor.h"

#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace talvera {

/// What the status panel needs of an X11 desktop, over a connection of its own. Without an X server nothing
/// is done and no press is seen.
class X11PanelDesktop final : public PanelDesktop, public PointerMonitor {
public:
    X11PanelDesktop();
    ~X11PanelDesktop() override;
    X11PanelDesktop(const X11PanelDesktop&) = delete;
    X11PanelDesktop& operator=(const X11PanelDesktop&) = delete;

    bool isComposited() override;
    void adopt(std::uint32_t window) override;
    void setShape(std::uint32_t window, const std::vector<QRect>& rectangles) override;
    void activate(std::uint32_t window) override;
    Subscription watchPresses(std::function<void(QPoint place)> pressed) override;

private:
    void selectPresses(bool selected);
    void readEvents();

    std::unique_ptr<X11Connection> m_x11;
    std::unique_ptr<QSocketNotifier> m_readable;
    std::weak_ptr<std::function<void(QPoint)>> m_pressed;
};

} // namespace talvera
