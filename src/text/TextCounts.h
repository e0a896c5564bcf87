// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <cstdint>

namespace talvera {

/// How much a text is, as the statistics count it.
struct TextCounts {
    std::int64_t words = 0;      ///< what stands between runs of white space
    std::int64_t characters = 0; ///< as readers see them: a flag or an accented letter is one

    bool operator==(const TextCounts&) const = default;
};

TextCounts countText(const QString& text);

} // namespace talvera
