// SPDX-License-Identifier: MIT
#include "text/TextCounts.h"

#include "text/Characters.h"

#include <utility>

namespace talvera {

TextCounts countText(const QString& text) {
    TextCounts counts;
    bool inWord = false;
    for (const auto character : characters(text)) {
        ++counts.characters;
        const bool wasInWord = std::exchange(inWord, !isWhitespace(character));
        if (inWord && !wasInWord)
            ++counts.words;
    }
    return counts;
}

} // namespace talvera
