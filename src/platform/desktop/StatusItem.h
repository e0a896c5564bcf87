// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>
#include <QString>

#include <functional>
#include <optional>

namespace talvera {

/// Our one item in the desktop's tray. Where the desktop has no tray the item is nowhere, and everything here
/// goes on working. Main thread only.
class StatusItem {
public:
    virtual ~StatusItem() = default;

    /// Shows the symbol of this name from now on.
    virtual void setSymbol(const QString& name) = 0;

    /// What the item says of itself, to the pointer and to screen readers.
    virtual void setToolTip(const QString& text) = 0;

    /// A hidden item gives its place in the tray away.
    virtual void setVisible(bool visible) = 0;

    /// The item stands in a tray, where the user can see it.
    virtual bool isSeen() const = 0;

    /// Where the item is, in the coordinates that windows are placed in; nothing when it isn't shown or when
    /// the tray doesn't tell. Some trays tell only where they were clicked: a rectangle of one pixel.
    virtual std::optional<QRect> frame() const = 0;

    /// Called for each click, in a turn of its own. To be assigned before the first one.
    std::function<void()> onClick;

    /// Called once when the desktop has been up for a while and still has no tray that could show the item.
    /// To be assigned before the item is first shown or hidden; where it isn't, nothing wakes up to look.
    std::function<void()> onNoTray;
};

} // namespace talvera
