// SPDX-License-Identifier: MIT
#include "linux/wayland/kwin/callOfKwin.h"

namespace talvera {

QDBusMessage callOfKwin(const QString& path, const QString& interface, const QString& method,
                        const QVariantList& arguments) {
    auto call = QDBusMessage::createMethodCall(QStringLiteral("org.kde.KWin"), path, interface, method);
    call.setAutoStartService(false);
    call.setArguments(arguments);
    return call;
}

} // namespace talvera
