// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace talvera {

/// What every transcript goes through before it is used. The rules are the same for every language. No
/// input makes them fail, and their time grows with the text's length only. Any thread.

/// Turns what the recognition tool wrote into the text that the user gets: joins its lines, drops bracketed
/// marks such as "[BLANK_AUDIO]", then applies the two functions below.
QString postProcess(const QString& text);

/// Turns spoken commands ("new line") into line breaks and tidies the blanks and marks around words.
QString normalize(const QString& text);

/// Ends a text that opens like a question with a question mark.
QString fixQuestionMark(const QString& text);

} // namespace talvera
