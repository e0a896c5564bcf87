// SPDX-License-Identifier: MIT
#pragma once

#include "shell/FramedWindow.h"

#include <memory>

class QQuickItem;
class QQuickWindow;

namespace talvera {

class FramedQuickWindow;
class PanelDesktop;
class SettingsModel;
class ViewEngine;

/// The settings on the screen: an ordinary window of the desktop, of any size from one that shows a row to
/// the whole screen, and the view in it.
class QuickSettingsWindow final : public FramedWindow {
public:
    /// All of it outlives the window.
    QuickSettingsWindow(ViewEngine& engine, SettingsModel& model, PanelDesktop& desktop);
    ~QuickSettingsWindow() override;
    QuickSettingsWindow(const QuickSettingsWindow&) = delete;
    QuickSettingsWindow& operator=(const QuickSettingsWindow&) = delete;

    void bringToFront() override;

    /// For tests and pictures.
    QQuickWindow& window();
    QQuickItem& view() { return *m_view; }

private:
    ViewEngine& m_engine;
    std::unique_ptr<FramedQuickWindow> m_window;
    std::unique_ptr<QQuickItem> m_view;
};

} // namespace talvera
