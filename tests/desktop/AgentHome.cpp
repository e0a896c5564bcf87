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

void AgentHome::addLanguageModel(LanguageModel model, const QString& fileName) {
    const auto* file =
        model == LanguageModel::Micro ? TALVERA_MICRO_LANGUAGE_MODEL : TALVERA_TEST_LANGUAGE_MODEL;
    QDir().mkpath(QFileInfo(languageModel(fileName)).path());
    if (!QFile::copy(file, languageModel(fileName)))
        throw std::runtime_error("the language model can't be put there");
}

void AgentHome::removeLanguageModel(const QString& fileName) {
    QFile::remove(languageModel(fileName));
}

void AgentHome::install(const QString& program) {
    const QDir programs(m_directory.filePath("programs"));
    programs.mkpath(".");
    QFile file(programs.filePath(program));
    const auto calls = m_directory.filePath("calls").toUtf8();
    if (!file.open(QIODevice::WriteOnly) ||
        file.write("#!/bin/sh\necho ${0##*/} \"$@\" >>'" + calls + "'\n") < 0 ||
        !file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner))
        throw std::runtime_error("a stand-in can't be installed");
    set("PATH", programs.path());
}

QStringList AgentHome::calls() const {
    QFile file(m_directory.filePath("calls"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll()).split('\n', Qt::SkipEmptyParts);
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
    for (auto variable = m_variables.begin(); variable != m_variables.end(); ++variable)
        environment.insert(variable.key(), variable.value());
    return environment;
}

} // namespace talvera::test
