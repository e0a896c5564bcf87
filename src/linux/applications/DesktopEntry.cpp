// SPDX-License-Identifier: MIT
#include "linux/applications/DesktopEntry.h"

#include "linux/support/ForeignText.h"

#include <QMap>

namespace talvera {

namespace {

/// The keys of the main group, the first of each name counting.
QMap<QByteArray, QByteArray> mainGroup(const QByteArray& content) {
    QMap<QByteArray, QByteArray> keys;
    bool inMainGroup = false;
    for (const auto& rawLine : content.split('\n')) {
        const auto line = rawLine.trimmed();
        if (line.startsWith('[')) {
            if (inMainGroup)
                break;
            inMainGroup = line == "[Desktop Entry]";
            continue;
        }
        const auto equals = line.indexOf('=');
        if (!inMainGroup || line.startsWith('#') || equals <= 0)
            continue;
        const auto key = line.left(equals).trimmed();
        if (!keys.contains(key))
            keys.insert(key, line.mid(equals + 1).trimmed());
    }
    return keys;
}

QByteArray unescaped(const QByteArray& value) {
    QByteArray result;
    for (qsizetype i = 0; i < value.size(); ++i) {
        if (value[i] != '\\' || i + 1 == value.size()) {
            result.append(value[i]);
            continue;
        }
        switch (value[++i]) {
        case 's':
        case 'n':
        case 'r':
        case 't':
            result.append(' ');
            break;
        default:
            result.append(value[i]);
        }
    }
    return result;
}

} // namespace

std::optional<DesktopEntry> parseDesktopEntry(const QString& id, const QByteArray& content,
                                              const QStringList& languages) {
    const auto keys = mainGroup(content);
    if (keys.value("Type") != "Application" || keys.value("Hidden") == "true")
        return std::nullopt;
    auto name = keys.value("Name");
    for (const auto& language : languages) {
        const auto key = "Name[" + language.toUtf8() + ']';
        if (keys.contains(key)) {
            name = keys.value(key);
            break;
        }
    }
    return DesktopEntry{id, foreignText(unescaped(name)),
                        foreignText(unescaped(keys.value("StartupWMClass")))};
}

} // namespace talvera
