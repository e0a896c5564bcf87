// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <exception>

namespace talvera {

/// A failure of the machine below us. `domain` names who reports it, `code` tells its cases apart, `message`
/// is for logs: the user reads fixed words instead.
class PlatformError : public std::exception {
public:
    PlatformError(QString domain, int code, QString message = {})
        : m_domain(std::move(domain))
        , m_code(code)
        , m_message(std::move(message))
        , m_what(QStringLiteral("%1 (%2): %3").arg(m_domain).arg(m_code).arg(m_message).toStdString()) {}

    const QString& domain() const { return m_domain; }
    int code() const { return m_code; }
    const QString& message() const { return m_message; }
    const char* what() const noexcept override { return m_what.c_str(); }

private:
    QString m_domain;
    int m_code;
    QString m_message;
    std::string m_what;
};

} // namespace talvera
