// SPDX-License-Identifier: MIT
#include "PanelOnX11.h"

#include "OtherWindow.h"

#include <QEventLoop>
#include <QGuiApplication>
#include <QPixmap>
#include <QScreen>

#include <algorithm>

namespace talvera::test {

namespace {

/// All contents that come have come, and all that go have gone.
bool hasSettled(const QQuickItem& item) {
    if (const auto shown = item.property("shown");
        shown.isValid() && item.opacity() != (shown.toBool() ? 1 : 0))
        return false;
    const auto children = item.childItems();
    return std::all_of(children.begin(), children.end(),
                       [](const QQuickItem* child) { return hasSettled(*child); });
}

} // namespace

QRect PanelOnX11::geometry() {
    const auto connection = X11Server().connect();
    const auto answer = connection->reply<xcb_get_geometry_reply_t>(
        xcb_get_geometry(connection->get(), xcb_window_t(panel.window().winId())));
    return answer ? QRect(answer->x, answer->y, answer->width, answer->height) : QRect();
}

QColor PanelOnX11::pixel(const QPoint& place) {
    const auto onScreen = geometry().topLeft() + place;
    const auto picture = QGuiApplication::primaryScreen()->grabWindow(0, onScreen.x(), onScreen.y(), 1, 1);
    return picture.toImage().pixelColor(0, 0);
}

bool PanelOnX11::awaitPaint() {
    if (!eventually([this] { return hasSettled(panel.root()); }))
        return false;
    const auto plane = views.theme().property("overlayOpaque").value<QColor>();
    // Beside the middle, where a text may stand: just inside of the outline's lower edge.
    const auto outline = panel.root().property("outline").toRectF().toRect();
    const QPoint place(outline.center().x(), outline.bottom() - 4);
    return eventually([&] {
        const auto seen = pixel(place);
        return std::abs(seen.red() - plane.red()) < 24 && std::abs(seen.green() - plane.green()) < 24 &&
               std::abs(seen.blue() - plane.blue()) < 24;
    });
}

void PanelOnX11::run(Duration duration) {
    QEventLoop loop;
    actor.startTimer(duration, [&loop] { loop.quit(); });
    loop.exec();
}

} // namespace talvera::test
