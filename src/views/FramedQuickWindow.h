// SPDX-License-Identifier: MIT
#pragma once

#include <QQuickWindow>

#include <functional>

namespace talvera {

class PanelDesktop;
class ViewEngine;

/// An ordinary window with the desktop's own frame: looks like one of ours, comes to the middle of the user's
/// screen, and tells when it has come there and when the user closes it. Main thread only.
class FramedQuickWindow : public QQuickWindow {
public:
    /// All of it outlives the window.
    FramedQuickWindow(ViewEngine& engine, PanelDesktop& desktop, const QString& title);

    std::function<void()> onClosed; ///< the user has closed it

    /// What the user's screen has room for.
    static QRect area();
    /// What the desktop's frame takes of the height, at most.
    static constexpr int frameRoom = 40;

    /// Gets this size, in the middle of the area.
    void centre(const QSize& size);

    /// Shows it; once it is on screen, brings it to the front and gives it the keyboard. True when it wasn't
    /// on screen before.
    bool bringToFront();

protected:
    bool event(QEvent* event) override;
    void exposeEvent(QExposeEvent* event) override;

private:
    PanelDesktop& m_desktop;
    bool m_shown = false;
};

} // namespace talvera
