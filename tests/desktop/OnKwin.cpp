// SPDX-License-Identifier: MIT
#include "OnWayland.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QFile>
#include <QFileInfo>

#include <stdexcept>

namespace talvera::test {

void compositor::bindHotkey(AgentHome&) {}

/// As packaging/talvera-keys.desktop.in does for the program that is installed. A file that is merely written
/// anew isn't read again.
void compositor::letPressKeys(const QString& program) {
    static int copies = 0;
    QFile file(qEnvironmentVariable("XDG_DATA_HOME") +
               QStringLiteral("/applications/talvera-copy-%1.desktop").arg(++copies));
    const auto text = "[Desktop Entry]\nType=Application\nName=Copy\nNoDisplay=true\nExec=" +
                      QFileInfo(program).canonicalFilePath().toUtf8() +
                      "\nX-KDE-Wayland-Interfaces=org_kde_kwin_fake_input\n";
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(text) != text.size())
        throw std::runtime_error("no desktop file");
}

bool compositor::keepsKeysOfTheDead() {
    auto question = QDBusMessage::createMethodCall("org.kde.kglobalaccel", "/kglobalaccel",
                                                   "org.kde.KGlobalAccel", "isGlobalShortcutAvailable");
    question.setArguments({int(Qt::CTRL) | int(Qt::ALT) | int(Qt::Key_Space), QString()});
    const auto answer = QDBusConnection::sessionBus().call(question);
    if (answer.type() != QDBusMessage::ReplyMessage)
        throw std::runtime_error(answer.errorMessage().toStdString());
    return !answer.arguments().value(0).toBool();
}

} // namespace talvera::test
