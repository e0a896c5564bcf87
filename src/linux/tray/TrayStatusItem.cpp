// SPDX-License-Identifier: MIT
#include "linux/tray/TrayStatusItem.h"

#include "linux/support/logicalRect.h"

#include <utility>

namespace talvera {

TrayStatusItem::TrayStatusItem(MainActor& actor, const SymbolPainter& painter, const QString& iconThemePath,
                               std::unique_ptr<TrayIcon> icon)
    : m_actor(actor)
    , m_item(painter, iconThemePath)
    , m_link(m_item)
    , m_icon(std::move(icon)) {
    m_link.onHostChanged = [this] { choose(); };
    m_item.onActivate = [this](QPoint position) {
        if (!position.isNull())
            m_clickPlace = position;
        clicked();
    };
    m_icon->onClick = [this] { clicked(); };
}

TrayStatusItem::~TrayStatusItem() {
    if (m_patience)
        m_actor.cancelTimer(*m_patience);
}

void TrayStatusItem::setSymbol(const QString& name) {
    m_item.setSymbol(name);
    m_icon->setSymbol(name);
}

void TrayStatusItem::setToolTip(const QString& text) {
    m_item.setToolTip(text);
    m_icon->setTitle(text);
}

void TrayStatusItem::setVisible(bool visible) {
    m_visible = visible;
    choose();
    if (onNoTray && !m_patience)
        m_patience = m_actor.startTimer(patience, [this] {
            if (!hasTray())
                onNoTray();
        });
}

bool TrayStatusItem::hasTray() const {
    return m_link.hasHost() == true || m_icon->hasTray();
}

bool TrayStatusItem::isSeen() const {
    return m_visible && hasTray();
}

std::optional<QRect> TrayStatusItem::frame() const {
    if (const auto icon = m_icon->frame())
        return icon;
    if (!m_visible || m_link.hasHost() != true || !m_clickPlace)
        return std::nullopt;
    return QRect(logicalRect(QRect(*m_clickPlace, QSize(1, 1))).topLeft(), QSize(1, 1));
}

/// Many panels show both kinds: then the icon stands only where the desktop itself prefers it.
void TrayStatusItem::choose() {
    m_link.setShown(m_visible);
    m_icon->setShown(m_visible && m_link.hasHost() == false);
}

void TrayStatusItem::clicked() {
    m_actor.post([this] {
        if (onClick)
            onClick();
    });
}

} // namespace talvera
