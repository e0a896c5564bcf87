// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonObject>
#include <QMap>
#include <QProcessEnvironment>
#include <QStringList>
#include <QTemporaryDir>

namespace talvera::test {

/// A home of the agent's own: its preferences, with the wizard done, and its data, with the micro model in
/// the place of the real one. What the agent stores there stays for the next agent of the same home.
class AgentHome {
public:
    enum class LanguageModel {
        OneAnswer, ///< says "So we meet at five." to everything
        Micro      ///< our micro language model
    };

    /// `preferences` in the form of the file that holds them, see docs/preferences.md.
    void setPreferences(const QJsonObject& preferences);
    /// Puts these bytes in the place of the preferences' file.
    void setPreferencesFile(const QByteArray& bytes);
    QString preferencesFile() const { return m_directory.filePath("config/Talvera/preferences.json"); }

    /// Puts a language model where the agent looks for them, or takes it away.
    void addLanguageModel(LanguageModel model = LanguageModel::OneAnswer,
                          const QString& fileName = QStringLiteral("m.gguf"));
    void removeLanguageModel(const QString& fileName = QStringLiteral("m.gguf"));

    /// The file of such a model.
    QString languageModel(const QString& fileName = QStringLiteral("m.gguf")) const {
        return m_directory.filePath("data/Talvera/language-models/" + fileName);
    }

    /// Sets a variable of the agent's environment.
    void set(const QString& variable, const QString& value) { m_variables.insert(variable, value); }
    /// Installs a stand-in for this program that writes down how it is called. The agent finds the
    /// stand-ins and no other program then.
    void install(const QString& program);
    /// The calls of stand-ins so far, a command line each.
    QStringList calls() const;

    /// What makes an agent live here, and tell what it does.
    QProcessEnvironment environment() const;

private:
    QTemporaryDir m_directory;
    QMap<QString, QString> m_variables;
};

} // namespace talvera::test
