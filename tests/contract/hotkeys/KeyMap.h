// SPDX-License-Identifier: MIT
#pragma once

#include <QProcess>
#include <QStringList>

#include <stdexcept>

namespace talvera::test {

/// The keyboards' layout while this lives; then us again.
class KeyMap {
public:
    /// As setxkbmap takes them, e.g. {"-layout", "us,ru"}.
    explicit KeyMap(const QStringList& arguments) { set(arguments); }
    KeyMap(const KeyMap&) = delete;
    KeyMap& operator=(const KeyMap&) = delete;
    ~KeyMap() { QProcess::execute(program(), reset()); }

private:
    static QString program() { return QStringLiteral("setxkbmap"); }
    static QStringList reset() {
        return {QStringLiteral("-option"),  QString(), QStringLiteral("-layout"), QStringLiteral("us"),
                QStringLiteral("-variant"), QString()};
    }
    static void set(const QStringList& arguments) {
        if (QProcess::execute(program(), arguments) != 0)
            throw std::runtime_error("setxkbmap failed");
    }
};

} // namespace talvera::test
