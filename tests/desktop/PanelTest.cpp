// SPDX-License-Identifier: MIT
#include "PanelTest.h"

#include "X11Windows.h"

#include <QFile>
#include <QJsonDocument>

#include <stdexcept>

namespace talvera::test {

namespace {

constexpr QSize leastPanel{250, 100}; ///< larger than an icon, narrower than the HUD's window

} // namespace

std::optional<QRect> PanelTest::panel() {
    return X11Windows().viewable("talvera", leastPanel);
}

bool PanelTest::panelComes() {
    return eventually([] {
        const auto frame = panel();
        return frame && X11Windows().hasKeyboard(*frame);
    });
}

bool PanelTest::panelGoes() {
    return eventually([] { return !panel().has_value(); });
}

void PanelTest::openPanel() {
    if (AgentProcess::startSecond(home) != 0 || !panelComes())
        throw std::runtime_error("the panel doesn't come");
}

void PanelTest::closePanel() {
    keys.tap(Key::escape);
    if (!panelGoes())
        throw std::runtime_error("the panel doesn't go");
}

ScreenReader::Element PanelTest::shown(const QString& role, const QString& name) const {
    std::optional<ScreenReader::Element> found;
    const bool isShown = eventually([&] {
        found = ScreenReader::find(agent->pid(), role, name);
        return found.has_value();
    });
    if (isShown)
        return *found;
    auto message = "the panel shows no " + role + " \"" + name + "\", but:";
    for (const auto& element : ScreenReader::read(agent->pid()))
        message += "\n  " + element.role + " \"" + element.name + '"';
    throw std::runtime_error(message.toStdString());
}

QJsonValue PanelTest::stored(const QString& key) const {
    QFile file(home.preferencesFile());
    if (!file.open(QFile::ReadOnly))
        return {};
    return QJsonDocument::fromJson(file.readAll()).object()["preferences"].toObject().value(key);
}

bool PanelTest::becomes(const QString& key, const QJsonValue& value) const {
    return eventually([&] { return stored(key) == value; });
}

} // namespace talvera::test
