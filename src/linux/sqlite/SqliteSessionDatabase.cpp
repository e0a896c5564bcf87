// SPDX-License-Identifier: MIT
#include "linux/sqlite/SqliteSessionDatabase.h"

#include "linux/support/replaceFile.h"
#include "platform/system/PlatformError.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <chrono>
#include <utility>

namespace talvera {

namespace {

/// What says that a file is ours: the bytes "Tlvr" in its header, and the version of its schema.
constexpr std::int64_t applicationId = 0x546C7672;
constexpr std::int64_t schemaVersion = 10000; // 1.0.0

/// How long another program that looks into the file may hold us up.
constexpr int patienceInMilliseconds = 200;

constexpr auto* schema = R"(
    CREATE TABLE DictationSession (
        id INTEGER PRIMARY KEY,
        timestamp REAL NOT NULL,
        audioDuration REAL NOT NULL,
        wordCount INTEGER NOT NULL,
        characterCount INTEGER NOT NULL,
        languageCode TEXT NOT NULL,
        translateEnabled INTEGER NOT NULL,
        polishEnabled INTEGER NOT NULL,
        polishBackend TEXT NOT NULL
    ) STRICT;
    CREATE INDEX DictationSession_timestamp ON DictationSession (timestamp);
    PRAGMA application_id = 0x546C7672;
    PRAGMA user_version = 10000;
)";

constexpr auto* insertion = R"(
    INSERT INTO DictationSession (timestamp, audioDuration, wordCount, characterCount, languageCode,
                                  translateEnabled, polishEnabled, polishBackend)
    VALUES (?, ?, ?, ?, ?, ?, ?, ?))";

constexpr auto* allSessions = R"(
    SELECT timestamp, audioDuration, wordCount, characterCount, languageCode, translateEnabled, polishEnabled,
           polishBackend
    FROM DictationSession ORDER BY id)";

/// The plus keeps SQLite from walking through the whole table in the order that it has anyway.
constexpr auto* laterSessions = R"(
    SELECT timestamp, audioDuration, wordCount, characterCount, languageCode, translateEnabled, polishEnabled,
           polishBackend
    FROM DictationSession WHERE timestamp > ? ORDER BY +id)";

using Seconds = std::chrono::duration<double>;

double toColumn(WallTime moment) {
    return Seconds(moment.time_since_epoch()).count();
}

WallTime fromColumn(double moment) {
    constexpr double farthest = 9e9; // what a moment in nanoseconds can hold, and a little less
    const Seconds held(std::min(std::max(moment, -farthest), farthest));
    return WallTime(std::chrono::round<WallTime::duration>(held));
}

/// Texts of a column, of which there are few different ones: those that repeat share their memory.
class RepeatedText {
public:
    const QString& of(const QByteArray& bytes) {
        if (bytes != m_bytes) {
            m_bytes = QByteArray(bytes.constData(), bytes.size());
            m_text = QString::fromUtf8(m_bytes);
        }
        return m_text;
    }

private:
    QByteArray m_bytes;
    QString m_text;
};

PlatformError notOurs(const QString& why) {
    return {QStringLiteral("SessionDatabase"), SQLITE_NOTADB, why};
}

/// The file itself is to blame, and not the disk, the memory or another program.
bool isUseless(const PlatformError& error) {
    constexpr std::array blamingTheFile{SQLITE_NOTADB, SQLITE_CORRUPT, SQLITE_CANTOPEN, SQLITE_ERROR};
    return std::find(blamingTheFile.begin(), blamingTheFile.end(), error.code()) != blamingTheFile.end();
}

/// SQLite would let others read the file that it makes.
void makePrivateFile(const QString& path) {
    QFile file(path);
    file.open(QIODevice::NewOnly, QFileDevice::ReadOwner | QFileDevice::WriteOwner);
}

/// It holds something that isn't SQLite's, or is no file at all: a pipe would keep whoever opens it waiting
/// for ever. SQLite itself would take a short file for an empty one.
bool isNoise(const QString& path) {
    const QFileInfo info(path);
    if (info.exists() && !info.isFile())
        return true;
    QFile file(path);
    constexpr QByteArrayView beginning("SQLite format 3\0", 16);
    return file.open(QIODevice::ReadOnly) && file.size() > 0 && file.read(beginning.size()) != beginning;
}

/// Moves the file away with what SQLite keeps beside it, under names that belong together as before. Answers
/// what became of it.
QString setAsideWithCompanions(const QString& path) {
    try {
        const auto aside = setAside(path);
        for (const auto* const suffix : {"-wal", "-journal", "-shm"})
            QFile::rename(path + QLatin1String(suffix), aside + QLatin1String(suffix));
        return QStringLiteral("set aside as ") + aside;
    } catch (const PlatformError& error) {
        return QStringLiteral("it can't be set aside: ") + error.message();
    }
}

} // namespace

SqliteSessionDatabase::SqliteSessionDatabase(const QByteArray& name)
    : m_file(name) {
    prepare();
}

void SqliteSessionDatabase::prepare() {
    sqlite3_busy_timeout(m_file.handle(), patienceInMilliseconds);
    sqlite3_db_config(m_file.handle(), SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    m_file.execute("PRAGMA trusted_schema = OFF");
    m_file.execute("PRAGMA cache_size = -256"); // KiB
    m_file.execute("PRAGMA synchronous = NORMAL");
    m_file.execute("PRAGMA journal_mode = WAL"); // file systems that can't have it keep the slower journal

    if (m_file.number("SELECT count(*) FROM sqlite_schema") == 0)
        createSchema();
    if (m_file.number("PRAGMA application_id") != applicationId)
        throw notOurs(QStringLiteral("not a file of ours"));
    if (m_file.number("PRAGMA user_version") != schemaVersion)
        throw notOurs(QStringLiteral("of an unknown version"));
    const SqliteStatement readable(m_file, allSessions);
    SqliteStatement check(m_file, "PRAGMA quick_check(1)");
    if (!check.next() || check.text(0) != "ok")
        throw notOurs(QStringLiteral("damaged"));
    m_version = versionNow();
}

void SqliteSessionDatabase::createSchema() {
    SqliteTransaction transaction(m_file);
    m_file.execute(schema);
    transaction.commit();
}

void SqliteSessionDatabase::insert(const std::vector<DictationSession>& sessions) {
    SqliteTransaction transaction(m_file);
    SqliteStatement statement(m_file, insertion);
    for (const auto& session : sessions) {
        statement.bind(1, toColumn(session.timestamp));
        statement.bind(2, session.audioDuration);
        statement.bind(3, session.wordCount);
        statement.bind(4, session.characterCount);
        statement.bind(5, session.languageCode);
        statement.bind(6, session.translateEnabled);
        statement.bind(7, session.polishEnabled);
        statement.bind(8, session.polishBackend);
        statement.next();
    }
    transaction.commit();
}

void SqliteSessionDatabase::forEach(std::optional<WallTime> after,
                                    const std::function<void(const DictationSession&)>& visit) {
    SqliteStatement rows(m_file, after ? laterSessions : allSessions);
    if (after)
        rows.bind(1, toColumn(*after));
    RepeatedText languages;
    RepeatedText backends;
    DictationSession session;
    while (rows.next()) {
        session.timestamp = fromColumn(rows.real(0));
        session.audioDuration = rows.real(1);
        session.wordCount = rows.integer(2);
        session.characterCount = rows.integer(3);
        session.languageCode = languages.of(rows.text(4));
        session.translateEnabled = rows.integer(5) != 0;
        session.polishEnabled = rows.integer(6) != 0;
        session.polishBackend = backends.of(rows.text(7));
        visit(session);
    }
}

bool SqliteSessionDatabase::hasGrownElsewhere() {
    const auto now = versionNow();
    return std::exchange(m_version, now) != now;
}

std::int64_t SqliteSessionDatabase::versionNow() {
    return m_file.number("PRAGMA data_version");
}

std::unique_ptr<SessionDatabase> SqliteSessionDatabases::open(const QString& path) {
    makePrivateFile(path);
    try {
        if (isNoise(path))
            throw notOurs(QStringLiteral("not a database"));
        return std::make_unique<SqliteSessionDatabase>(QFile::encodeName(path));
    } catch (const PlatformError& error) {
        if (!isUseless(error) || !QFile::exists(path))
            throw;
        throw PlatformError(error.domain(), error.code(),
                            error.message() + QStringLiteral("; ") + setAsideWithCompanions(path));
    }
}

std::unique_ptr<SessionDatabase> SqliteSessionDatabases::openInMemory() {
    return std::make_unique<SqliteSessionDatabase>(":memory:");
}

} // namespace talvera
