// SPDX-License-Identifier: MIT
#pragma once

#include "linux/sqlite/Sqlite.h"
#include "platform/system/SessionDatabase.h"

#include <QByteArray>

#include <cstdint>

namespace talvera {

/// The sessions in a table of an SQLite file, "DictationSession", with the columns that DictationSession has
/// members; moments are seconds since 1970.
///
/// Others may read the file meanwhile. Each insertion is one transaction in the write-ahead log, which costs
/// no wait for the disk: the end of the process loses nothing, the end of the power at most the last few.
class SqliteSessionDatabase final : public SessionDatabase {
public:
    /// Takes a file of ours, or an empty one, which becomes one. Throws PlatformError when it is neither or
    /// is damaged.
    explicit SqliteSessionDatabase(const QByteArray& name);

    void insert(const std::vector<DictationSession>& sessions) override;
    void forEach(std::optional<WallTime> after,
                 const std::function<void(const DictationSession&)>& visit) override;
    bool hasGrownElsewhere() override;

private:
    void prepare();
    void createSchema();
    std::int64_t versionNow();

    SqliteFile m_file;
    std::int64_t m_version = 0; ///< becomes another one when others write to the file
};

/// Opens and makes them.
class SqliteSessionDatabases final : public SessionDatabases {
public:
    std::unique_ptr<SessionDatabase> open(const QString& path) override;
    std::unique_ptr<SessionDatabase> openInMemory() override;
};

} // namespace talvera
