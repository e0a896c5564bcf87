// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/server/X11EventPump.h"
#include "platform/desktop/PanelDesktop.h"
#include "platform/desktop/PointerMonitor.h"

#include <functional>
#include <memory>

namespace talvera {

class X11Server;

/// What the status panel needs of an X11 desktop, over a connection of its own. When the server has gone
/// nothing is done and no press is seen.
class X11PanelDesktop final : public PanelDesktop, public PointerMonitor {
public:
    explicit X11PanelDesktop(const X11Server& server);
    ~X11PanelDesktop() override;

    bool isComposited() override;
    void adopt(QWindow& window) override;
    void setSize(QWindow& window, const QSize& pixels) override;
    void setShape(QWindow& window, const std::vector<QRect>& rectangles) override;
    void setShadow(QWindow& window, const QMargins& margins, const std::vector<QRect>& clickable) override;
    void activate(QWindow& window) override;
    Subscription watchPresses(std::function<void(QPoint place)> pressed) override;

private:
    void selectPresses(bool selected);
    void handle(const xcb_generic_event_t& event);

    const std::unique_ptr<X11Connection> m_connection;
    std::weak_ptr<std::function<void(QPoint)>> m_pressed;
    X11EventPump m_pump;
};

} // namespace talvera
