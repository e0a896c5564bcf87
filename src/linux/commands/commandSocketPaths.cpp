// SPDX-License-Identifier: MIT
#include "linux/commands/commandSocketPaths.h"

#include <QProcessEnvironment>
#include <QRegularExpression>

namespace talvera {

namespace {

/// "wayland-0", which may be given with its path.
QString waylandName(const QString& display) {
    return display.section(u'/', -1);
}

/// ":0" for ":0.0" and "unix:0.1" alike: a server, whatever its screen.
QString x11Name(const QString& display) {
    static const QRegularExpression form(QStringLiteral("^(?:unix/?)?(.*:\\d+)(?:\\.\\d+)?$"));
    const auto match = form.match(display);
    return match.hasMatch() ? match.captured(1).replace(u'/', u'_') : QString();
}

} // namespace

QStringList commandSocketPaths(const QString& directory, const QProcessEnvironment& environment) {
    QStringList paths;
    for (const auto& name : {waylandName(environment.value(QStringLiteral("WAYLAND_DISPLAY"))),
                             x11Name(environment.value(QStringLiteral("DISPLAY")))}) {
        if (!name.isEmpty())
            paths << QStringLiteral("%1/%2.socket").arg(directory, name);
    }
    return paths;
}

} // namespace talvera
