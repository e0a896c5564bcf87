// SPDX-License-Identifier: MIT
#include "views/FramedQuickWindow.h"

#include "platform/desktop/PanelDesktop.h"
#include "views/ViewEngine.h"
#include "views/controls/SymbolProvider.h"

#include <QCloseEvent>
#include <QCursor>
#include <QGuiApplication>
#include <QIcon>
#include <QPixmap>
#include <QScreen>

#include <utility>

namespace talvera {

namespace {

QIcon windowIcon(const QColor& color) {
    QIcon icon;
    for (const int pixels : {16, 32, 48, 64})
        icon.addPixmap(
            QPixmap::fromImage(symbolImage(QStringLiteral("waveform.badge.microphone"), color, pixels)));
    return icon;
}

} // namespace

FramedQuickWindow::FramedQuickWindow(ViewEngine& engine, PanelDesktop& desktop, const QString& title)
    : m_desktop(desktop) {
    setTitle(title);
    setIcon(windowIcon(engine.theme().property("accent").value<QColor>()));
    setColor(engine.theme().property("window").value<QColor>());
}

QRect FramedQuickWindow::area() {
    auto* screen = QGuiApplication::screenAt(QCursor::pos());
    return (screen ? screen : QGuiApplication::primaryScreen())->availableGeometry();
}

void FramedQuickWindow::centre(const QSize& size) {
    const auto room = area();
    setGeometry(
        QRect(room.center() - QPoint(size.width(), size.height() + frameRoom) / 2 + QPoint(0, frameRoom / 2),
              size));
}

bool FramedQuickWindow::bringToFront() {
    if (!isVisible()) {
        show();
        return true;
    }
    if (windowStates() & Qt::WindowMinimized)
        showNormal();
    raise();
    m_desktop.activate(*this);
    return false;
}

bool FramedQuickWindow::event(QEvent* event) {
    if (event->type() != QEvent::Close)
        return QQuickWindow::event(event);
    event->accept();
    if (onClosed)
        onClosed();
    return true;
}

void FramedQuickWindow::exposeEvent(QExposeEvent* event) {
    QQuickWindow::exposeEvent(event);
    if (isExposed() && !std::exchange(m_shown, true))
        m_desktop.activate(*this);
}

} // namespace talvera
