// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <memory>

#include <sqlite3.h>

namespace talvera {

/// An open SQLite file, of which the thin layer below throws PlatformError (domain "SessionDatabase", code
/// SQLite's own primary one).
class SqliteFile {
public:
    /// `name` may be ":memory:".
    explicit SqliteFile(const QByteArray& name);

    void execute(const char* sql);
    /// The whole number that a query answers with first.
    std::int64_t number(const char* sql);

    sqlite3* handle() const { return m_handle.get(); }
    [[noreturn]] void fail() const;

private:
    struct Close {
        void operator()(sqlite3* file) const { sqlite3_close_v2(file); }
    };
    std::unique_ptr<sqlite3, Close> m_handle;
};

/// A prepared statement. Values are bound from 1 and read from 0.
class SqliteStatement {
public:
    SqliteStatement(SqliteFile& file, const char* sql);

    void bind(int index, double value);
    void bind(int index, std::int64_t value);
    void bind(int index, bool value) { bind(index, std::int64_t{value}); }
    void bind(int index, const QString& value);

    /// Goes to the next row; false behind the last one, and then it may run anew.
    bool next();

    double real(int column) const { return sqlite3_column_double(m_handle.get(), column); }
    std::int64_t integer(int column) const { return sqlite3_column_int64(m_handle.get(), column); }
    /// The text's bytes, until the next call.
    QByteArray text(int column) const;

private:
    void check(int result) const;

    SqliteFile& m_file;
    struct Finalize {
        void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
    };
    std::unique_ptr<sqlite3_stmt, Finalize> m_handle;
};

/// A transaction, rolled back unless it was committed.
class SqliteTransaction {
public:
    explicit SqliteTransaction(SqliteFile& file);
    SqliteTransaction(const SqliteTransaction&) = delete;
    SqliteTransaction& operator=(const SqliteTransaction&) = delete;
    ~SqliteTransaction();

    void commit();

private:
    SqliteFile& m_file;
    bool m_open = true;
};

} // namespace talvera
