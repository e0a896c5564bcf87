// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

namespace talvera {

/// Tells the language of a text.
class LanguageRecognizer {
public:
    virtual ~LanguageRecognizer() = default;

    /// The two-letter code of the language that most of `text` is in; nothing when it can't tell.
    virtual std::optional<QString> dominantLanguage(const QString& text) = 0;
};

} // namespace talvera
