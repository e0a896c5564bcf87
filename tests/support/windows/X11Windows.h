// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/server/X11Connection.h"

#include <QRect>
#include <QString>

#include <memory>
#include <optional>

namespace talvera::test {

/// What stands on the screen, as the X server tells it.
class X11Windows {
public:
    X11Windows();

    /// The first window of this class that can be seen and is at least so large.
    std::optional<QRect> viewable(const std::string& windowClass, QSize least) const;

    /// The keyboard goes to a window that lies here.
    bool hasKeyboard(const QRect& frame) const;

    /// Something is drawn here: the pixels are not all the same.
    bool isDrawnOn(const QRect& area) const;

    /// There is a tray that takes windows.
    bool hasTray() const;

    QSize screen() const;

private:
    std::optional<QRect> find(xcb_window_t window, const std::string& windowClass, QSize least) const;

    std::unique_ptr<X11Connection> m_x11;
};

} // namespace talvera::test
