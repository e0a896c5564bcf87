// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Lifetime.h"
#include "concurrency/Published.h"
#include "concurrency/Time.h"
#include "shell/MenuBarController.h"
#include "shell/panel/MenuPanelWindow.h"

#include <memory>
#include <optional>

namespace talvera {

class AppSettings;
class MainActor;
class PointerMonitor;
class StatsStore;
class StatusItem;

/// Owns the status item in the tray and the panel that opens at it. Main thread only; lives as long as the
/// process.
class MenuPanelController {
public:
    struct Parts {
        MainActor& actor;
        StatusItem& statusItem;
        PointerMonitor& pointer;
        /// Makes the panel's window; called when it is first shown.
        std::function<std::unique_ptr<MenuPanelWindow>()> makeWindow;
    };

    MenuPanelController(MenuBarController& menuBar, AppSettings& settings, StatsStore& stats, Parts parts);
    ~MenuPanelController();
    MenuPanelController(const MenuPanelController&) = delete;
    MenuPanelController& operator=(const MenuPanelController&) = delete;

    /// The item was clicked: the panel toggles.
    void statusButtonClicked();

    /// Shows the panel; one that is open is brought up again.
    void open();
    void close();
    bool isOpen() const { return m_monitor.has_value(); }

    /// The panel's window has lost the keyboard.
    void windowDidResignKey();

private:
    MenuPanelWindow& window();
    QRect fittingFrame();
    void followContent();
    void updateItem();
    void pressedSomewhere(QPoint place);
    bool keyDown(Qt::Key key);

    MenuBarController& m_menuBar;
    StatsStore& m_stats;
    Parts m_parts;
    std::unique_ptr<MenuPanelWindow> m_window;
    std::optional<QRect> m_item; ///< where it was when the panel was opened
    ScreenArea m_screen;
    std::optional<Subscription> m_monitor; ///< of presses elsewhere, only while the panel is open
    std::optional<Instant> m_closedFromElsewhere;
    Cancellables m_cancellables;
    Lifetime m_lifetime;
};

} // namespace talvera
