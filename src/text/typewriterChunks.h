// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

namespace talvera {

/// Cuts `text` into what is typed at one stroke each: a user-perceived character and all white space behind
/// it. Joined, the chunks give the text again.
QStringList typewriterChunks(const QString& text);

} // namespace talvera
