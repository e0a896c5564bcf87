// SPDX-License-Identifier: MIT
#include "OnWayland.h"

#include <QJsonDocument>
#include <QProcess>

#include <stdexcept>

namespace talvera::test {

namespace {

constexpr int patienceMs = 120000;

} // namespace

OnWayland::OnWayland() {
    hotkeys = {Key::leftControl, Key::leftAlt, Key::space};
    compositor::bindHotkey(home);
}

void OnWayland::dictateInto(Receiver& receiver, const QString& text, const Samples& speech) {
    const auto before = receiver.text();
    holdAndSay(speech);
    EXPECT_TRUE(isWritten(receiver, before + text));
    agent->await("menu idle");
}

testing::AssertionResult OnWayland::isWritten(Receiver& receiver, const QString& text) {
    if (receiver.waitForText(text, AgentProcess::patience))
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << "it holds: " << receiver.text().toStdString();
}

/// A compositor may look for new programs once in a while only, and asks what one may do when it connects.
void OnWayland::startAgentOf(const QString& program, const QJsonObject& preferences) {
    compositor::letPressKeys(program);
    startAgent(preferences, program);
    const auto isReady = [&] {
        if (status()["ready"].toBool())
            return true;
        agent.reset();
        startAgentAgain(program);
        return false;
    };
    ASSERT_TRUE(eventually(isReady));
}

/// A terminal has read the chord once it has read the key behind it.
void OnWayland::expectKeysAreTheUsersAgain() {
    const Receiver terminal(Receiver::Kind::WaylandTerminal, "the user's terminal");
    const QChar controlSpace(0);
    EXPECT_TRUE(eventually([&] {
        pressHotkey();
        releaseHotkey();
        keys.tap(Key::a);
        return terminal.text().contains(controlSpace);
    }));
    EXPECT_FALSE(compositor::keepsKeysOfTheDead());
}

QByteArray OnWayland::told(const QStringList& arguments) const {
    QProcess process;
    process.setProcessEnvironment(home.environment());
    process.start(TALVERA_PROGRAM, arguments);
    process.waitForFinished(patienceMs);
    return process.readAllStandardOutput();
}

QJsonObject OnWayland::status() const {
    return QJsonDocument::fromJson(told({"status", "--json"})).object();
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
