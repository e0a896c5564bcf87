// SPDX-License-Identifier: MIT
#include "AgentHome.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QProcess>

#include <stdexcept>

namespace talvera::test {

void AgentHome::setPreferences(const QJsonObject& preferences) {
    QJsonObject all{{"hasOnboarded", true}, {"launchAtLoginDefaultApplied", true}};
    for (auto preference = preferences.begin(); preference != preferences.end(); ++preference)
        all.insert(preference.key(), preference.value());
    const QJsonObject file{{"format", "talvera-preferences"}, {"version", 1}, {"preferences", all}};
    setPreferencesFile(QJsonDocument(file).toJson());
}

void AgentHome::setPreferencesFile(const QByteArray& bytes) {
    QDir().mkpath(QFileInfo(preferencesFile()).path());
    QFile file(preferencesFile());
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        throw std::runtime_error("the preferences can't be written");
}

QProcessEnvironment AgentHome::environment() const {
    QProcess maker;
    maker.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    maker.start(TALVERA_MICRO_HOME, {TALVERA_BUILD, m_directory.path()});
    if (!maker.waitForFinished() || maker.exitCode() != 0)
        throw std::runtime_error("no home for the agent");
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert("TALVERA_TRACE", "1");
    for (const auto& line : QString::fromUtf8(maker.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts))
        environment.insert(line.section('=', 0, 0), line.section('=', 1));
    return environment;
}

} // namespace talvera::test
