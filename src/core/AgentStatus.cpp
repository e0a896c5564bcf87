// SPDX-License-Identifier: MIT
#include "core/AgentStatus.h"

#include "shell/panel/MenuPanelStatus.h"
#include "text/Localization.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace talvera {

namespace {

QString hotkeyName(const std::optional<WatchResult>& result) {
    if (!result)
        return QStringLiteral("none");
    switch (*result) {
    case WatchResult::Watching:
        return QStringLiteral("watching");
    case WatchResult::ChordTaken:
        return QStringLiteral("taken");
    case WatchResult::Unavailable:
    case WatchResult::ChordsOnly:
        return QStringLiteral("unavailable");
    }
    Q_UNREACHABLE();
}

} // namespace

QString AgentStatus::json() const {
    const QJsonObject object{{"state", rawValue(state)},
                             {"ready", isReady()},
                             {"microphone", hasMicrophone},
                             {"keyboard", canTypeAndWatchKeys},
                             {"model", hasModel},
                             {"hotkey", hotkeyName(hotkey)},
                             {"spokenLanguage", spokenLanguage},
                             {"targetLanguage", targetLanguage},
                             {"version", QStringLiteral(TALVERA_VERSION)}};
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

QString AgentStatus::text() const {
    QStringList lines{QStringLiteral("Talvera " TALVERA_VERSION), orbLabel(state, isReady())};
    lines << lacks;
    lines << formatted(localized("command.status.spoken", "Spoken language: %@"), spokenLanguage)
          << formatted(localized("command.status.target", "Translation into: %@"), targetLanguage);
    return lines.join(u'\n');
}

} // namespace talvera
