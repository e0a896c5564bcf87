// SPDX-License-Identifier: MIT
#include "ScreenReader.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <algorithm>

namespace talvera::test::ScreenReader {

namespace {

Element elementFrom(const QJsonObject& told) {
    const auto place = told["place"].toArray();
    QStringList states;
    for (const auto& state : told["states"].toArray())
        states.append(state.toString());
    return {told["role"].toString(), told["name"].toString(), told["description"].toString(), states,
            QRect(place[0].toInt(), place[1].toInt(), place[2].toInt(), place[3].toInt())};
}

} // namespace

std::vector<Element> read(pid_t program) {
    QProcess reader;
    reader.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    reader.start(TALVERA_SCREEN_READER, {QString::number(program)});
    reader.waitForFinished(60000);
    std::vector<Element> elements;
    for (const auto& line : reader.readAllStandardOutput().split('\n')) {
        auto element = elementFrom(QJsonDocument::fromJson(line).object());
        if (element.is("showing"))
            elements.push_back(std::move(element));
    }
    return elements;
}

std::optional<Element> find(pid_t program, const QString& role, const QString& name) {
    const auto elements = read(program);
    const auto found = std::find_if(elements.begin(), elements.end(), [&](const Element& element) {
        return (role.isEmpty() || element.role == role) && element.name == name;
    });
    return found == elements.end() ? std::nullopt : std::optional(*found);
}

} // namespace talvera::test::ScreenReader
