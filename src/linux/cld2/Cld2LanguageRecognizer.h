// SPDX-License-Identifier: MIT
#pragma once

#include "platform/language/LanguageRecognizer.h"

namespace talvera {

/// Tells languages by their letters and by how often these stand together. Answers only when it is sure: of
/// one or two words it seldom is. Any thread.
class Cld2LanguageRecognizer final : public LanguageRecognizer {
public:
    std::optional<QString> dominantLanguage(const QString& text) override;
};

} // namespace talvera
