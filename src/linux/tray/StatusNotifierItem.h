// SPDX-License-Identifier: MIT
#pragma once

#include "linux/support/SymbolPainter.h"

#include <QList>
#include <QObject>
#include <QPoint>

#include <functional>

class QDBusArgument;

namespace talvera {

/// A picture as it travels over D-Bus: bytes of alpha, red, green, blue.
struct NotifierPixmap {
    int width = 0;
    int height = 0;
    QByteArray argb;
};
using NotifierPixmaps = QList<NotifierPixmap>;

struct NotifierToolTip {
    QString iconName;
    NotifierPixmaps icon;
    QString title;
    QString description;
};

QDBusArgument& operator<<(QDBusArgument& argument, const NotifierPixmap& pixmap);
const QDBusArgument& operator>>(const QDBusArgument& argument, NotifierPixmap& pixmap);
QDBusArgument& operator<<(QDBusArgument& argument, const NotifierToolTip& toolTip);
const QDBusArgument& operator>>(const QDBusArgument& argument, NotifierToolTip& toolTip);

/// The item as panels see it over D-Bus: the object that is exported, without any logic. It has no menu, and
/// tells of none: whatever path it gave, some panels would ask there. Main thread only.
class StatusNotifierItem final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Category READ category CONSTANT)
    Q_PROPERTY(QString Id READ id CONSTANT)
    Q_PROPERTY(QString Title READ title CONSTANT)
    Q_PROPERTY(QString Status READ status CONSTANT)
    Q_PROPERTY(int WindowId READ windowId CONSTANT)
    Q_PROPERTY(bool ItemIsMenu READ itemIsMenu CONSTANT)
    Q_PROPERTY(QString IconThemePath READ iconThemePath CONSTANT)
    Q_PROPERTY(QString IconName READ iconName NOTIFY NewIcon)
    Q_PROPERTY(talvera::NotifierPixmaps IconPixmap READ iconPixmap NOTIFY NewIcon)
    Q_PROPERTY(QString OverlayIconName READ none CONSTANT)
    Q_PROPERTY(talvera::NotifierPixmaps OverlayIconPixmap READ noPixmap CONSTANT)
    Q_PROPERTY(QString AttentionIconName READ none CONSTANT)
    Q_PROPERTY(talvera::NotifierPixmaps AttentionIconPixmap READ noPixmap CONSTANT)
    Q_PROPERTY(QString AttentionMovieName READ none CONSTANT)
    Q_PROPERTY(talvera::NotifierToolTip ToolTip READ toolTip NOTIFY NewToolTip)

public:
    /// `iconThemePath` is where the symbols lie as named icons, for panels that like to colour them
    /// themselves.
    StatusNotifierItem(SymbolPainter painter, QString iconThemePath);

    void setSymbol(const QString& name);
    void setToolTip(const QString& text);

    QString category() const { return QStringLiteral("ApplicationStatus"); }
    QString id() const;
    QString title() const { return QStringLiteral("Talvera"); }
    QString status() const { return QStringLiteral("Active"); }
    int windowId() const { return 0; }
    bool itemIsMenu() const { return false; }
    QString iconThemePath() const { return m_iconThemePath; }
    QString iconName() const;
    NotifierPixmaps iconPixmap() const;
    NotifierToolTip toolTip() const { return {{}, {}, m_toolTip, {}}; }
    QString none() const { return {}; }
    NotifierPixmaps noPixmap() const { return {}; }

    /// A click, and where the panel says that it was; some say 0, 0.
    std::function<void(QPoint position)> onActivate;

public Q_SLOTS:
    void Activate(int x, int y);
    void SecondaryActivate(int x, int y);
    void ContextMenu(int x, int y);
    void Scroll(int delta, const QString& orientation);

Q_SIGNALS:
    void NewTitle();
    void NewIcon();
    void NewAttentionIcon();
    void NewOverlayIcon();
    void NewToolTip();
    void NewStatus(const QString& status);

private:
    SymbolPainter m_painter;
    QString m_iconThemePath;
    QString m_symbol;
    QString m_toolTip;
};

} // namespace talvera

Q_DECLARE_METATYPE(talvera::NotifierPixmap)
Q_DECLARE_METATYPE(talvera::NotifierToolTip)
