// SPDX-License-Identifier: MIT
#include "Stage.h"

#include <QCursor>
#include <QDir>
#include <QEventLoop>
#include <QGuiApplication>
#include <QLinearGradient>
#include <QPainter>
#include <QPixmap>
#include <QScreen>

namespace talvera::test {

Stage::Wallpaper::Wallpaper(bool dark, Backdrop backdrop)
    : m_dark(dark)
    , m_backdrop(backdrop) {
    setFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnBottomHint);
    setGeometry(QGuiApplication::primaryScreen()->geometry().adjusted(
        0, 0, 0, -1)); // of the whole size it would lie above panels
    show();
}

/// Colours and, in the lower half, a page of text: what lies below an overlay in real life.
void Stage::Wallpaper::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (m_backdrop == Backdrop::Plain) {
        painter.fillRect(QRect(QPoint(), size()), m_dark ? QColor("#242833") : QColor("#d5dbe8"));
        return;
    }
    QLinearGradient sky(0, 0, width(), height());
    sky.setColorAt(0, m_dark ? QColor("#16222f") : QColor("#8fc1e3"));
    sky.setColorAt(0.5, m_dark ? QColor("#3b2f4f") : QColor("#f3d9c6"));
    sky.setColorAt(1, m_dark ? QColor("#0e3b3a") : QColor("#b5d3b1"));
    painter.fillRect(QRect(QPoint(), size()), sky);
    const QRect page(width() / 2, height() / 2, width() / 2, height() / 2);
    painter.fillRect(page, m_dark ? QColor("#202024") : QColor("#ffffff"));
    painter.setPen(m_dark ? QColor("#c8c8cc") : QColor("#303034"));
    for (int y = page.top() + 24; y < page.bottom(); y += 20)
        painter.drawText(page.left() + 16, y,
                         "The quick brown fox jumps over the lazy dog, and the dog does not mind at all.");
}

Stage::Stage(const QString& directory, const QString& label, const QString& language, bool dark,
             Backdrop backdrop)
    : m_directory(directory)
    , m_label(label)
    , m_language(language)
    , m_isForFrontPage(backdrop == Backdrop::Plain)
    , m_wallpaper(dark, backdrop) {
    appearance.isDark.set(dark);
    QDir().mkpath(directory);
    QCursor::setPos(0, 0); // where nothing lights up under it
}

void Stage::wait(Duration duration) {
    QEventLoop loop;
    actor.startTimer(duration, [&loop] { loop.quit(); });
    loop.exec();
}

void Stage::photograph(const QString& name, const QRect& area) {
    const auto picture =
        QGuiApplication::primaryScreen()->grabWindow(0, area.x(), area.y(), area.width(), area.height());
    picture.save(m_directory + "/" + name + "-" + m_label + ".png");
}

} // namespace talvera::test
