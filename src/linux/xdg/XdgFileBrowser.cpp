// SPDX-License-Identifier: MIT
#include "linux/xdg/XdgFileBrowser.h"

#include <QDir>
#include <QProcess>

namespace talvera {

bool XdgFileBrowser::show(const QString& directory) {
    QDir().mkpath(directory);
    return QProcess::startDetached(QStringLiteral("xdg-open"), {directory});
}

} // namespace talvera
