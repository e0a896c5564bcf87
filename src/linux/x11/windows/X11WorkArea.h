// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/windows/WorkAreas.h"

#include <QRect>

#include <optional>
#include <vector>

namespace talvera {

class EwmhWindows;
class X11Connection;

/// Where the user works, in the server's pixels. One thread; a question costs some round trips.
class X11WorkArea {
public:
    /// `windows` asks on `connection`; both outlive it.
    X11WorkArea(X11Connection& connection, EwmhWindows& windows);

    /// What panels leave free of the monitor with the active window, else of the one with the pointer.
    /// Nothing where there is no monitor.
    std::optional<QRect> now();

private:
    std::vector<QRect> monitors();
    std::optional<QRect> activeWindow();
    QRect pointer();
    std::vector<Strut> struts();

    X11Connection& m_connection;
    EwmhWindows& m_windows;
    bool m_hasMonitors = false; ///< the server knows of monitors
};

} // namespace talvera
