// SPDX-License-Identifier: MIT
#include "shell/panel/MenuPanelController.h"

#include "concurrency/MainActor.h"
#include "persistence/AppSettings.h"
#include "persistence/StatsStore.h"
#include "platform/desktop/PointerMonitor.h"
#include "platform/desktop/StatusItem.h"
#include "shell/panel/MenuPanelStatus.h"

#include <algorithm>
#include <utility>

namespace talvera {

namespace {

/// Panels tell of a click when the button comes up again, and the press before has already closed ours.
constexpr Duration sameClick = seconds(0.4);

} // namespace

MenuPanelController::MenuPanelController(MenuBarController& menuBar, AppSettings& settings, StatsStore& stats,
                                         Parts parts)
    : m_menuBar(menuBar)
    , m_stats(stats)
    , m_parts(std::move(parts)) {
    auto& actor = m_parts.actor;
    auto& item = m_parts.statusItem;
    item.onClick = [this] { statusButtonClicked(); };
    updateItem();
    const auto update = [this](const auto&) { updateItem(); };
    m_cancellables.push_back(menuBar.state.subscribe(actor, update));
    m_cancellables.push_back(menuBar.translateIndicator.subscribe(actor, update));
    m_cancellables.push_back(menuBar.aiCleanupIndicator.subscribe(actor, update));
    m_cancellables.push_back(
        settings.showMenuBarIcon.subscribe(actor, [&item](bool shown) { item.setVisible(shown); }));
}

MenuPanelController::~MenuPanelController() {
    m_parts.statusItem.onClick = nullptr;
}

void MenuPanelController::updateItem() {
    m_parts.statusItem.setSymbol(m_menuBar.statusIconName());
    m_parts.statusItem.setToolTip(statusTitle(m_menuBar.state.get()));
}

void MenuPanelController::statusButtonClicked() {
    const auto closed = std::exchange(m_closedFromElsewhere, std::nullopt);
    if (isOpen())
        close();
    else if (!closed || m_parts.actor.now() - *closed > sameClick)
        open();
}

void MenuPanelController::open() {
    auto& panel = window();
    panel.renewContent();
    m_stats.refresh();
    m_item = m_parts.statusItem.frame();
    m_screen = panel.screenOf(m_item);
    panel.fadeIn(fittingFrame());
    m_monitor = m_parts.pointer.watchPresses([this](QPoint place) { pressedSomewhere(place); });
}

QRect MenuPanelController::fittingFrame() {
    return menuPanelFrame(m_item, m_screen, std::max(window().fittingHeight(), menuPanelLeastHeight));
}

/// A banner may come or go while the panel is open.
void MenuPanelController::followContent() {
    if (!isOpen())
        return;
    if (const auto frame = fittingFrame(); frame != m_window->frame())
        m_window->setFrame(frame);
}

void MenuPanelController::close() {
    if (!isOpen())
        return;
    m_monitor.reset();
    m_window->fadeOut();
}

/// A press on the item itself is about to toggle the panel.
void MenuPanelController::pressedSomewhere(QPoint place) {
    if (!isOpen() || m_window->frame().contains(place))
        return;
    if (const auto item = m_parts.statusItem.frame(); item && item->width() > 1 && item->contains(place))
        return;
    m_closedFromElsewhere = m_parts.actor.now();
    close();
}

bool MenuPanelController::keyDown(Qt::Key key) {
    if (key != Qt::Key_Escape)
        return false;
    close();
    return true;
}

void MenuPanelController::windowDidResignKey() {
    m_parts.actor.post(m_lifetime.ifAlive([this] {
        if (!isOpen())
            return;
        m_closedFromElsewhere = m_parts.actor.now();
        close();
    }));
}

MenuPanelWindow& MenuPanelController::window() {
    if (!m_window) {
        m_window = m_parts.makeWindow();
        m_window->onKeyDown = [this](Qt::Key key) { return keyDown(key); };
        m_window->onFittingHeightChanged = [this] { followContent(); };
        m_window->onResignKey = [this] { windowDidResignKey(); };
    }
    return *m_window;
}

} // namespace talvera
