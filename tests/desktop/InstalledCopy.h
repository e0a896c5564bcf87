// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QTemporaryDir>

namespace talvera::test {

/// The program installed once more, so that a test can put another one in the place of one that it starts.
/// Throws std::runtime_error when that can't be done.
class InstalledCopy {
public:
    InstalledCopy();

    QString program() const { return m_directory.filePath("talvera"); }

    /// A place for files of the test's own, gone with the copy.
    QString at(const QString& name) const { return m_directory.filePath(name); }

    /// What the program starts under this name, and where the copy has it.
    static QString built(const QString& resource);
    QString installed(const QString& resource) const { return at("Resources/" + resource); }

    /// Puts a link to `file` there.
    void replace(const QString& resource, const QString& file);

private:
    QTemporaryDir m_directory;
};

} // namespace talvera::test
