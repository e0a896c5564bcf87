// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <concepts>
#include <exception>
#include <optional>
#include <string>
#include <system_error>
#include <type_traits>
#include <utility>

namespace talvera {

/// An enumeration of the failures of one domain: `platformDomain`, declared beside it, gives that name.
template <typename Failure>
concept PlatformFailure = std::is_enum_v<Failure> && requires(Failure failure) {
    { platformDomain(failure) } -> std::same_as<QString>;
};

/// A failure of the machine below us. `domain` names who reports it, `code` tells its cases apart, `message`
/// is for logs: the user reads fixed words instead. Most domains have the system's error numbers for codes;
/// the others have an enumeration.
class PlatformError : public std::exception {
public:
    PlatformError(QString domain, int code, QString message = {})
        : m_domain(std::move(domain))
        , m_code(code)
        , m_message(std::move(message))
        , m_what(QStringLiteral("%1 (%2): %3").arg(m_domain).arg(m_code).arg(m_message).toStdString()) {}

    template <PlatformFailure Failure>
    explicit PlatformError(Failure failure, QString message = {})
        : PlatformError(platformDomain(failure), static_cast<int>(failure), std::move(message)) {}

    /// The failure, if it is one of that enumeration's domain.
    template <PlatformFailure Failure>
    std::optional<Failure> as() const {
        if (m_domain != platformDomain(Failure{}))
            return std::nullopt;
        return static_cast<Failure>(m_code);
    }

    /// The system's error number is this one; for the domains that have such codes.
    bool is(std::errc number) const { return m_code == static_cast<int>(number); }

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
