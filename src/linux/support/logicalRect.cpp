// SPDX-License-Identifier: MIT
#include "linux/support/logicalRect.h"

#include <QGuiApplication>
#include <QScreen>

namespace talvera {

QRect logicalRect(const QRect& native) {
    for (const auto* screen : QGuiApplication::screens()) {
        const auto corner = screen->geometry().topLeft();
        const auto scale = screen->devicePixelRatio();
        if (!QRect(corner, screen->geometry().size() * scale).contains(native.center()))
            continue;
        const auto offset = (native.topLeft() - corner) / scale;
        return QRect(corner + offset, native.size() / scale);
    }
    return native;
}

} // namespace talvera
