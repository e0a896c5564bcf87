// SPDX-License-Identifier: MIT
#include "linux/wayland/kwin/KwinSessionAccess.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>

namespace talvera {

/// The bus itself answers, and asks nobody.
bool KwinSessionAccess::isKwinThere() {
    const auto* const bus = QDBusConnection::sessionBus().interface();
    return bus && bus->isServiceRegistered(QStringLiteral("org.kde.KWin")) &&
           bus->isServiceRegistered(QStringLiteral("org.kde.kglobalaccel"));
}

std::vector<SessionLack> KwinSessionAccess::lacks() {
    if (!isKwinThere())
        return {SessionLack::KnownSession};
    return m_keyboard->get() ? std::vector<SessionLack>() : std::vector{SessionLack::KeyPosting};
}

} // namespace talvera
