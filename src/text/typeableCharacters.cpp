// SPDX-License-Identifier: MIT
#include "text/typeableCharacters.h"

#include <QChar>
#include <QList>

namespace talvera {

std::u32string typeableCharacters(const QString& chunk) {
    std::u32string characters;
    char32_t previous = 0;
    for (const char32_t character : chunk.toUcs4()) {
        const bool lineBreak = character == U'\n' || character == U'\r';
        const bool secondHalf = character == U'\n' && previous == U'\r';
        if (lineBreak && !secondHalf) {
            characters += U'\n';
        } else if (!lineBreak && (character == U'\t' || QChar::category(character) != QChar::Other_Control)) {
            characters += character;
        }
        previous = character;
    }
    return characters;
}

} // namespace talvera
