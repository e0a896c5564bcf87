// SPDX-License-Identifier: MIT
#include "views/panel/KeyablePanel.h"

#include <utility>

namespace talvera {

KeyablePanel::KeyablePanel() {
    setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    setTitle(QStringLiteral("Talvera"));
    setColor(Qt::transparent);
    connect(this, &QWindow::activeChanged, this, &KeyablePanel::activityChanged);
}

void KeyablePanel::keyPressEvent(QKeyEvent* event) {
    if (onKeyDown && onKeyDown(static_cast<Qt::Key>(event->key()))) {
        event->accept();
        return;
    }
    QQuickWindow::keyPressEvent(event);
}

void KeyablePanel::exposeEvent(QExposeEvent* event) {
    QQuickWindow::exposeEvent(event);
    if (isExposed() && !std::exchange(m_shown, true) && onShown)
        onShown();
}

void KeyablePanel::hideEvent(QHideEvent* event) {
    m_shown = false;
    m_wasActive = false;
    QQuickWindow::hideEvent(event);
}

void KeyablePanel::activityChanged() {
    if (isActive())
        m_wasActive = true;
    else if (std::exchange(m_wasActive, false) && isVisible() && onResignKey)
        onResignKey();
}

} // namespace talvera
