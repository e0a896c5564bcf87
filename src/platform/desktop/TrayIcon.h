// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>
#include <QString>

#include <functional>
#include <optional>

namespace talvera {

/// Our icon in an old kind of tray, where the desktop has no better one. Main thread only.
class TrayIcon {
public:
    TrayIcon() = default;
    TrayIcon(const TrayIcon&) = delete;
    TrayIcon& operator=(const TrayIcon&) = delete;
    virtual ~TrayIcon() = default;

    /// Shows the symbol of this name from now on.
    virtual void setSymbol(const QString& name) = 0;
    virtual void setTitle(const QString& text) = 0;

    /// Shows the icon wherever there is a tray, from now on.
    virtual void setShown(bool shown) = 0;

    /// There is a tray of this kind.
    virtual bool hasTray() const = 0;

    /// Where the icon is, in the coordinates that windows are placed in; nothing while no tray shows it.
    virtual std::optional<QRect> frame() = 0;

    /// The icon was clicked, with any button. To be assigned before it is shown.
    std::function<void()> onClick;
};

} // namespace talvera
