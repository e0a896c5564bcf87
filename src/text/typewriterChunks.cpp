// SPDX-License-Identifier: MIT
#include "text/typewriterChunks.h"

#include "text/Characters.h"

namespace talvera {

QStringList typewriterChunks(const QString& text) {
    QStringList chunks;
    for (const auto character : characters(text)) {
        if (!chunks.isEmpty() && isWhitespace(character))
            chunks.back() += character;
        else
            chunks.append(character.toString());
    }
    return chunks;
}

} // namespace talvera
