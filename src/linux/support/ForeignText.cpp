// SPDX-License-Identifier: MIT
#include "linux/support/ForeignText.h"

namespace talvera {

namespace {

/// Characters that turn the direction of what follows, so that a name could garble the notice it stands in.
bool isDirectionControl(QChar character) {
    const auto code = character.unicode();
    return code == 0x061C || code == 0x200E || code == 0x200F || (code >= 0x202A && code <= 0x202E) ||
           (code >= 0x2066 && code <= 0x2069);
}

} // namespace

QString foreignText(const QByteArray& utf8) {
    // Names are short: a megabyte of name is looked at no further than the limit can need.
    auto text = QString::fromUtf8(utf8.left(foreignTextLimit * 8));
    for (auto& character : text) {
        const auto category = character.category();
        if (category == QChar::Other_Control || category == QChar::Separator_Line ||
            category == QChar::Separator_Paragraph)
            character = QLatin1Char(' ');
    }
    text.removeIf(isDirectionControl);
    text = text.simplified();
    if (text.size() > foreignTextLimit)
        text.truncate(text.at(foreignTextLimit - 1).isHighSurrogate() ? foreignTextLimit - 1
                                                                      : foreignTextLimit);
    return text;
}

} // namespace talvera
