// SPDX-License-Identifier: MIT
#include "OnSway.h"

#include <QFile>
#include <QJsonDocument>
#include <QProcess>

#include <stdexcept>

namespace talvera::test {

namespace {

constexpr int patienceMs = 120000;

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

void OnSway::dictateInto(Receiver& receiver, const QString& text, const Samples& speech) {
    const auto before = receiver.text();
    holdAndSay(speech);
    EXPECT_TRUE(isWritten(receiver, before + text));
    agent->await("menu idle");
}

testing::AssertionResult OnSway::isWritten(Receiver& receiver, const QString& text) {
    if (receiver.waitForText(text, AgentProcess::patience))
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << "it holds: " << receiver.text().toStdString();
}

QByteArray OnSway::told(const QStringList& arguments) const {
    QProcess process;
    process.setProcessEnvironment(home.environment());
    process.start(TALVERA_PROGRAM, arguments);
    process.waitForFinished(patienceMs);
    return process.readAllStandardOutput();
}

QJsonObject OnSway::status() const {
    return QJsonDocument::fromJson(told({"status", "--json"})).object();
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

QByteArray outputOfProgram(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(program, arguments);
    if (!process.waitForFinished(patienceMs) || process.exitStatus() != QProcess::NormalExit ||
        process.exitCode() != 0)
        throw std::runtime_error(program.toStdString() + " fails");
    return process.readAllStandardOutput();
}

} // namespace talvera::test
