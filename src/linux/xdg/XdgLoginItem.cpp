// SPDX-License-Identifier: MIT
#include "linux/xdg/XdgLoginItem.h"

#include "linux/support/applicationId.h"
#include "linux/support/replaceFile.h"
#include "linux/xdg/XdgDirectories.h"
#include "platform/system/PlatformError.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QStandardPaths>

#include <algorithm>
#include <cerrno>
#include <optional>

namespace talvera {

namespace {

using Keys = QHash<QString, QString>;

constexpr qint64 largestEntry = 256 * 1024;

std::optional<QByteArray> contentOf(const QString& path) {
    QFile file(path);
    if (path.isEmpty() || !file.open(QIODevice::ReadOnly))
        return std::nullopt;
    return file.read(largestEntry);
}

/// The keys of the one group that matters; of those that stand there twice the first.
Keys keysOf(const QByteArray& content) {
    Keys keys;
    bool inGroup = false;
    for (const auto& line : QString::fromUtf8(content).split(u'\n')) {
        const auto text = line.trimmed();
        if (text.startsWith(u'['))
            inGroup = text == u"[Desktop Entry]";
        const auto equals = text.indexOf(u'=');
        if (!inGroup || equals <= 0 || text.startsWith(u'#'))
            continue;
        const auto key = text.left(equals).trimmed();
        if (!keys.contains(key))
            keys.insert(key, text.mid(equals + 1).trimmed());
    }
    return keys;
}

bool isTrue(const QString& value) {
    return value == u"true" || value == u"1";
}

bool isFalse(const QString& value) {
    return value == u"false" || value == u"0";
}

bool names(const QString& list, const QStringList& desktops) {
    const auto listed = list.split(u';', Qt::SkipEmptyParts);
    return std::any_of(desktops.begin(), desktops.end(),
                       [&listed](const QString& desktop) { return listed.contains(desktop); });
}

/// A value without the escapes that texts of such files have.
QString unescaped(const QString& value) {
    QString text;
    for (qsizetype i = 0; i < value.size(); ++i) {
        if (value[i] != u'\\' || i + 1 == value.size()) {
            text += value[i];
            continue;
        }
        switch (value[++i].unicode()) {
        case u's':
            text += u' ';
            break;
        case u'\\':
            text += u'\\';
            break;
        default: // line breaks and tabs, which no path of a program has
            text += value[i];
        }
    }
    return text;
}

/// The first word of a command line.
QString programOf(const QString& command) {
    QString word;
    bool isQuoted = false;
    for (qsizetype i = 0; i < command.size(); ++i) {
        const auto character = command[i];
        if (character == u'"')
            isQuoted = !isQuoted;
        else if (character == u' ' && !isQuoted)
            break;
        else if (character == u'\\' && isQuoted && i + 1 < command.size())
            word += command[++i];
        else
            word += character;
    }
    return word.replace(QStringLiteral("%%"), QStringLiteral("%"));
}

bool canRun(const QString& program, const QStringList& path) {
    if (program.contains(u'/'))
        return QDir::isAbsolutePath(program) && QFileInfo(program).isFile() &&
               QFileInfo(program).isExecutable();
    return !program.isEmpty() && !path.isEmpty() && !QStandardPaths::findExecutable(program, path).isEmpty();
}

/// A path as a value.
QString escaped(QString path) {
    return path.replace(u'\\', QStringLiteral("\\\\"));
}

/// A path as a word of a command line, in the two layers of quoting that such entries have.
QString quoted(const QString& path) {
    QString word;
    for (const auto character : path) {
        if (QStringLiteral("\"`$\\").contains(character))
            word += u'\\';
        word += character == u'%' ? QStringLiteral("%%") : QString(character);
    }
    return u'"' + escaped(word) + u'"';
}

[[noreturn]] void fail(int code, const QString& message) {
    throw PlatformError(QStringLiteral("LoginItem"), code, message);
}

void write(const QString& path, const QByteArray& content) {
    if (!QDir().mkpath(QFileInfo(path).path()))
        fail(ENOTDIR, QStringLiteral("%1 can't be made").arg(QFileInfo(path).path()));
    try {
        replaceFile(path, content);
    } catch (const PlatformError& error) {
        fail(error.code(), error.message());
    }
}

QByteArray entryFor(const QString& program) {
    return "[Desktop Entry]\n"
           "Type=Application\n"
           "Name=Talvera\n"
           "Exec=" +
           quoted(program).toUtf8() +
           "\n"
           "TryExec=" + // a program that has been removed isn't missed at each login
           escaped(program).toUtf8() +
           "\n"
           "Icon=talvera\n"
           "Terminal=false\n"
           "StartupNotify=false\n"
           "X-GNOME-Autostart-enabled=true\n";
}

} // namespace

XdgLoginItem::Session XdgLoginItem::session() {
    const auto variable = [](const char* name) { return QFile::decodeName(qgetenv(name)); };
    auto home = variable("XDG_CONFIG_HOME");
    if (!QDir::isAbsolutePath(home))
        home = XdgDirectories::home() + QStringLiteral("/.config");
    auto dirs = variable("XDG_CONFIG_DIRS").split(u':', Qt::SkipEmptyParts);
    if (dirs.isEmpty())
        dirs << QStringLiteral("/etc/xdg");
    return {QFileInfo(QStringLiteral("/proc/self/exe")).symLinkTarget(), home, dirs,
            variable("XDG_CURRENT_DESKTOP").split(u':', Qt::SkipEmptyParts),
            variable("PATH").split(u':', Qt::SkipEmptyParts)};
}

bool XdgLoginItem::starts(const QByteArray& content, const Session& session) {
    const auto keys = keysOf(content);
    if (keys.value(QStringLiteral("Type")) != u"Application" || isTrue(keys.value(QStringLiteral("Hidden"))))
        return false;
    if (isFalse(keys.value(QStringLiteral("X-GNOME-Autostart-enabled"))) ||
        isFalse(keys.value(QStringLiteral("X-MATE-Autostart-enabled"))))
        return false;
    const auto only = keys.constFind(QStringLiteral("OnlyShowIn"));
    if (only != keys.constEnd() && !names(*only, session.desktops))
        return false;
    if (names(keys.value(QStringLiteral("NotShowIn")), session.desktops))
        return false;
    const auto needed = keys.constFind(QStringLiteral("TryExec"));
    if (needed != keys.constEnd() && !canRun(unescaped(*needed), session.path))
        return false;
    return canRun(programOf(unescaped(keys.value(QStringLiteral("Exec")))), session.path);
}

bool XdgLoginItem::isRegistered() {
    // An entry of the user's stands for the system's of the same name, also when it starts nothing.
    auto content = contentOf(userEntry());
    if (!content)
        content = contentOf(systemEntry());
    return content && starts(*content, m_session);
}

void XdgLoginItem::registerProgram() {
    if (m_session.program.isEmpty())
        fail(ENOENT, QStringLiteral("our own program has no path"));
    write(userEntry(), entryFor(m_session.program));
}

void XdgLoginItem::unregisterProgram() {
    if (!systemEntry().isEmpty()) {
        write(userEntry(), "[Desktop Entry]\nType=Application\nName=Talvera\nHidden=true\n");
        return;
    }
    QFile file(userEntry());
    const bool isThere = file.exists() || QFileInfo(file.fileName()).isSymLink();
    if (isThere && !file.remove())
        fail(EACCES, file.errorString());
}

QString XdgLoginItem::userEntry() const {
    return QStringLiteral("%1/autostart/%2.desktop").arg(m_session.configHome, QLatin1String(applicationId));
}

QString XdgLoginItem::systemEntry() const {
    for (const auto& directory : m_session.configDirs) {
        const auto path =
            QStringLiteral("%1/autostart/%2.desktop").arg(directory, QLatin1String(applicationId));
        if (QFileInfo(path).isFile())
            return path;
    }
    return {};
}

} // namespace talvera
