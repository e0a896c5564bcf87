// SPDX-License-Identifier: MIT
#include "linux/tray/TrayStatusItem.h"

#include "linux/x11/windows/logicalRect.h"

namespace talvera {

TrayStatusItem::TrayStatusItem(MainActor& actor, const SymbolPainter& painter, const QString& iconThemePath)
    : m_actor(actor)
    , m_item(painter, iconThemePath)
    , m_link(m_item)
    , m_embedded(painter)
    , m_patience(actor.startTimer(Patience, [this] {
        if (m_link.hasHost() != true && !m_embedded.hasTray() && onNoTray)
            onNoTray();
    })) {
    m_link.onHostChanged = [this] { choose(); };
    m_item.onActivate = [this](QPoint position) {
        if (!position.isNull())
            m_clickPlace = position;
        clicked();
    };
    m_embedded.onClick = [this] { clicked(); };
}

TrayStatusItem::~TrayStatusItem() {
    m_actor.cancelTimer(m_patience);
}

void TrayStatusItem::setSymbol(const QString& name) {
    m_item.setSymbol(name);
    m_embedded.setSymbol(name);
}

void TrayStatusItem::setToolTip(const QString& text) {
    m_item.setToolTip(text);
    m_embedded.setTitle(text);
}

void TrayStatusItem::setVisible(bool visible) {
    m_visible = visible;
    choose();
}

std::optional<QRect> TrayStatusItem::frame() const {
    if (const auto embedded = m_embedded.frame())
        return logicalRect(*embedded);
    if (!m_visible || m_link.hasHost() != true || !m_clickPlace)
        return std::nullopt;
    return QRect(logicalRect(QRect(*m_clickPlace, QSize(1, 1))).topLeft(), QSize(1, 1));
}

/// Many panels show both kinds: then the icon stands only where the desktop itself prefers it.
void TrayStatusItem::choose() {
    m_link.setShown(m_visible);
    m_embedded.setShown(m_visible && m_link.hasHost() == false);
}

void TrayStatusItem::clicked() {
    m_actor.post([this] {
        if (onClick)
            onClick();
    });
}

} // namespace talvera
