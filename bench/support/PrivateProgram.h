// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QTemporaryDir>

namespace talvera::bench {

/// The agent's program in a directory of its own, with a recogniser of our choice where it looks for one.
class PrivateProgram {
public:
    /// The recogniser answers at once and says `text`, whatever it is asked.
    explicit PrivateProgram(const QString& text);

    QString program() const { return m_directory.filePath(QStringLiteral("talvera")); }
    QString recogniser() const { return m_directory.filePath(QStringLiteral("Resources/whisper-cli")); }

private:
    QTemporaryDir m_directory;
};

} // namespace talvera::bench
