// SPDX-License-Identifier: MIT
#include "linux/tray/StatusNotifierItem.h"

#include "linux/support/applicationId.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QtEndian>

#include <utility>

namespace talvera {

namespace {

/// What panels show, at 100 % and at 200 %.
constexpr int pixmapSizes[] = {16, 22, 24, 32, 44, 48, 64};

NotifierPixmap pixmapOf(const QImage& image) {
    const auto argb = image.convertToFormat(QImage::Format_ARGB32);
    NotifierPixmap pixmap{argb.width(), argb.height(), {}};
    pixmap.argb.reserve(argb.sizeInBytes());
    for (int y = 0; y < argb.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(argb.constScanLine(y));
        for (int x = 0; x < argb.width(); ++x) {
            const auto pixel = qToBigEndian(line[x]);
            pixmap.argb.append(reinterpret_cast<const char*>(&pixel), sizeof(pixel));
        }
    }
    return pixmap;
}

} // namespace

QDBusArgument& operator<<(QDBusArgument& argument, const NotifierPixmap& pixmap) {
    argument.beginStructure();
    argument << pixmap.width << pixmap.height << pixmap.argb;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, NotifierPixmap& pixmap) {
    argument.beginStructure();
    argument >> pixmap.width >> pixmap.height >> pixmap.argb;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const NotifierToolTip& toolTip) {
    argument.beginStructure();
    argument << toolTip.iconName << toolTip.icon << toolTip.title << toolTip.description;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, NotifierToolTip& toolTip) {
    argument.beginStructure();
    argument >> toolTip.iconName >> toolTip.icon >> toolTip.title >> toolTip.description;
    argument.endStructure();
    return argument;
}

StatusNotifierItem::StatusNotifierItem(SymbolPainter painter, QString iconThemePath)
    : m_painter(std::move(painter))
    , m_iconThemePath(std::move(iconThemePath))
    , m_toolTip(title()) {
    qDBusRegisterMetaType<NotifierPixmap>();
    qDBusRegisterMetaType<NotifierPixmaps>();
    qDBusRegisterMetaType<NotifierToolTip>();
}

QString StatusNotifierItem::id() const {
    return QString::fromLatin1(applicationId);
}

void StatusNotifierItem::setSymbol(const QString& name) {
    if (name == m_symbol)
        return;
    m_symbol = name;
    Q_EMIT NewIcon();
}

void StatusNotifierItem::setToolTip(const QString& text) {
    if (text == m_toolTip)
        return;
    m_toolTip = text;
    Q_EMIT NewToolTip();
}

/// As the files are called that are installed: icon names have no dots.
QString StatusNotifierItem::iconName() const {
    if (m_symbol.isEmpty())
        return {};
    return QStringLiteral("talvera-%1-symbolic").arg(QString(m_symbol).replace(u'.', u'-'));
}

NotifierPixmaps StatusNotifierItem::iconPixmap() const {
    NotifierPixmaps pixmaps;
    for (const int size : pixmapSizes)
        pixmaps.append(pixmapOf(m_painter(m_symbol, TrayColors::onUnknown, size)));
    return pixmaps;
}

void StatusNotifierItem::Activate(int x, int y) {
    if (onActivate)
        onActivate(QPoint(x, y));
}

void StatusNotifierItem::SecondaryActivate(int x, int y) {
    Activate(x, y);
}

/// There is one panel and no menu: every click opens it.
void StatusNotifierItem::ContextMenu(int x, int y) {
    Activate(x, y);
}

void StatusNotifierItem::Scroll(int, const QString&) {}

} // namespace talvera
