// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <cstdint>
#include <exception>
#include <string>

namespace talvera {

/// A run of the recognition tool that gave no text. The user never reads it: callers have fixed words.
class WhisperError : public std::exception {
public:
    enum class Kind {
        ProcessFailed,    ///< the tool ended with a status other than 0
        MissingBinary,    ///< the tool is not an executable file
        MissingModel,     ///< no model file
        OutputUnreadable, ///< the tool's text file could not be read as UTF-8
    };

    /// `text` is what the tool wrote to its standard error.
    static WhisperError processFailed(std::int32_t status, const QString& text);
    static WhisperError missingBinary();
    static WhisperError missingModel();
    static WhisperError outputUnreadable();

    Kind kind() const { return m_kind; }
    std::int32_t status() const { return m_status; } ///< of ProcessFailed; else 0
    const QString& text() const { return m_text; }   ///< of ProcessFailed; else empty

    /// The case and its payload, for log lines.
    const char* what() const noexcept override { return m_what.c_str(); }

private:
    WhisperError(Kind kind, std::string what)
        : m_kind(kind)
        , m_what(std::move(what)) {}

    Kind m_kind;
    std::int32_t m_status = 0;
    QString m_text;
    std::string m_what;
};

} // namespace talvera
