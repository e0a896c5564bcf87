// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/server/X11EventPump.h"
#include "linux/x11/server/X11Server.h"
#include "platform/desktop/DisplayClaim.h"

#include <memory>
#include <optional>

namespace talvera {

/// The claim as the owner of a selection, as window managers and trays do it. Another start is told by asking
/// the owner to convert the selection. Has a connection of its own, with whose end the claim ends.
class X11DisplayClaim final : public DisplayClaim {
public:
    /// Tries to get the place. Where there is no server there is none to be had.
    explicit X11DisplayClaim(const X11Server& server);
    ~X11DisplayClaim() override;

    bool isOurs() const override { return m_isOurs; }
    bool tellHolder(const QString& purpose) override;
    void onSecondStart(std::function<void(const QString& purpose)> heard) override;

private:
    void claim();
    void answer(const xcb_selection_request_event_t& request);

    std::unique_ptr<X11Connection> m_x11;
    xcb_window_t m_window = XCB_WINDOW_NONE;
    bool m_isOurs = false;
    std::function<void(const QString& purpose)> m_heard;
    std::optional<X11EventPump> m_events;
};

} // namespace talvera
