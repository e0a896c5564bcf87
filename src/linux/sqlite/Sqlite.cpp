// SPDX-License-Identifier: MIT
#include "linux/sqlite/Sqlite.h"

#include "platform/system/PlatformError.h"

#include <utility>

namespace talvera {

SqliteFile::SqliteFile(const QByteArray& name) {
    sqlite3* file = nullptr;
    constexpr int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX;
    const int result = sqlite3_open_v2(name.constData(), &file, flags, nullptr);
    m_handle.reset(file);
    if (result != SQLITE_OK)
        fail();
}

void SqliteFile::fail() const {
    // Without a handle there was not even memory for one.
    const int code = m_handle ? sqlite3_errcode(m_handle.get()) & 0xFF : SQLITE_NOMEM;
    const auto* const message = m_handle ? sqlite3_errmsg(m_handle.get()) : sqlite3_errstr(SQLITE_NOMEM);
    throw PlatformError(QStringLiteral("SessionDatabase"), code, QString::fromUtf8(message));
}

void SqliteFile::execute(const char* sql) {
    if (sqlite3_exec(m_handle.get(), sql, nullptr, nullptr, nullptr) != SQLITE_OK)
        fail();
}

std::int64_t SqliteFile::number(const char* sql) {
    SqliteStatement statement(*this, sql);
    return statement.next() ? statement.integer(0) : 0;
}

SqliteStatement::SqliteStatement(SqliteFile& file, const char* sql)
    : m_file(file) {
    sqlite3_stmt* statement = nullptr;
    check(sqlite3_prepare_v3(file.handle(), sql, -1, 0, &statement, nullptr));
    m_handle.reset(statement);
}

void SqliteStatement::bind(int index, double value) {
    check(sqlite3_bind_double(m_handle.get(), index, value));
}

void SqliteStatement::bind(int index, std::int64_t value) {
    check(sqlite3_bind_int64(m_handle.get(), index, value));
}

void SqliteStatement::bind(int index, const QString& value) {
    const auto bytes = value.toUtf8();
    check(sqlite3_bind_text64(m_handle.get(), index, bytes.constData(),
                              static_cast<sqlite3_uint64>(bytes.size()), SQLITE_TRANSIENT, SQLITE_UTF8));
}

bool SqliteStatement::next() {
    switch (sqlite3_step(m_handle.get())) {
    case SQLITE_ROW:
        return true;
    case SQLITE_DONE:
        sqlite3_reset(m_handle.get());
        return false;
    default:
        m_file.fail();
    }
}

QByteArray SqliteStatement::text(int column) const {
    const auto* const bytes = sqlite3_column_text(m_handle.get(), column);
    return QByteArray::fromRawData(reinterpret_cast<const char*>(bytes),
                                   sqlite3_column_bytes(m_handle.get(), column));
}

void SqliteStatement::check(int result) const {
    if (result != SQLITE_OK)
        m_file.fail();
}

SqliteTransaction::SqliteTransaction(SqliteFile& file)
    : m_file(file) {
    m_file.execute("BEGIN IMMEDIATE");
}

SqliteTransaction::~SqliteTransaction() {
    // Some failures have rolled it back already; then this fails, and nothing is lost.
    if (m_open)
        sqlite3_exec(m_file.handle(), "ROLLBACK", nullptr, nullptr, nullptr);
}

void SqliteTransaction::commit() {
    m_file.execute("COMMIT");
    m_open = false;
}

} // namespace talvera
