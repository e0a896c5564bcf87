// SPDX-License-Identifier: MIT
#pragma once

#include <QPoint>
#include <QProcess>

namespace talvera::test {

/// A program that shows a tray on this desktop, as users run it. It ends with this object.
class Tray {
public:
    enum class Kind {
        X11,  ///< trayer: takes icons as windows into itself
        DBus, ///< Xfce's panel: draws items that it hears of over the session bus
    };

    /// Returns when the tray takes icons. Throws std::runtime_error when it doesn't in time.
    explicit Tray(Kind kind);
    ~Tray();
    Tray(const Tray&) = delete;
    Tray& operator=(const Tray&) = delete;

    /// Ends it without a chance to tidy up.
    void kill();

    /// A place on the first icon, where there is one.
    QPoint icon() const;

    /// The icon has been taken in; false when it isn't in time.
    bool waitForIcon() const;

private:
    bool isReady() const;
    bool hasIcon() const;

    Kind m_kind;
    QProcess m_process;
};

} // namespace talvera::test
