// SPDX-License-Identifier: MIT
#include "OnSway.h"

#include <QFile>
#include <QJsonDocument>
#include <QProcess>

#include <algorithm>
#include <stdexcept>

namespace talvera::test {

namespace {

QString configurationFile() {
    return qEnvironmentVariable("RIG_DIR") + "/sway/config";
}

QByteArray contentsOf(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error("no configuration of sway's");
    return file.readAll();
}

/// What sway has read last.
QByteArray configuration() {
    const auto told = outputOfProgram("swaymsg", {"-rt", "get_config"});
    return QJsonDocument::fromJson(told).object()["config"].toString().toUtf8();
}

} // namespace

QStringList unbindings() {
    QStringList all;
    for (const auto* more : {"", "Shift+", "Mod4+", "Shift+Mod4+"})
        all << QStringLiteral("unbindcode %1Ctrl+Mod1+65").arg(more);
    return all;
}

bool isDone(const QString& command) {
    return QProcess::execute("swaymsg", {"-q", command}) == 0;
}

void compositor::bindHotkey(AgentHome&) {}

void compositor::turnTo(pid_t process) {
    tellSway(QStringLiteral("[pid=%1] focus").arg(process));
}

void compositor::letPressKeys(const QString&) {}

bool compositor::keepsKeysOfTheDead() {
    return std::ranges::any_of(unbindings(), isDone);
}

UsersConfiguration::UsersConfiguration(const QByteArray& lines)
    : m_before(contentsOf(configurationFile())) {
    write(m_before + lines);
}

UsersConfiguration::~UsersConfiguration() {
    try {
        write(m_before);
    } catch (const std::runtime_error& failure) {
        ADD_FAILURE() << failure.what();
    }
}

void UsersConfiguration::write(const QByteArray& text) const {
    QFile file(configurationFile());
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(text) != text.size())
        throw std::runtime_error("sway's configuration can't be written");
    file.close();
    tellSway("reload");
    const auto deadline = std::chrono::steady_clock::now() + AgentProcess::patience;
    while (configuration() != text) { // it reads the file a little after it has answered
        if (std::chrono::steady_clock::now() > deadline)
            throw std::runtime_error("sway doesn't read its configuration");
    }
}

} // namespace talvera::test
