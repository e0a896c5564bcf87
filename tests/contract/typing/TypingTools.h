// SPDX-License-Identifier: MIT
#pragma once

#include "RecordingConsole.h"
#include "platform/desktop/Pasteboard.h"
#include "platform/keyboard/KeyEventPoster.h"
#include "receivers/mixedText.h"

#include <QString>

#include <functional>
#include <string>

namespace talvera::test {

/// What was said in this program.
inline RecordingConsole console;

/// Types `text` as delivery does: piece by piece, at its pace, and only into the window that has the focus at
/// the beginning. Calls `beforeChunk` with the number of each piece that is about to be typed. Answers with
/// what ended it before the end, or with Posted.
PostResult typeText(KeyEventPoster& poster, const QString& text,
                    const std::function<void(qsizetype)>& beforeChunk = nullptr);

/// The same, but wherever the focus is.
PostResult typeAnywhere(KeyEventPoster& poster, const QString& text,
                        const std::function<void(qsizetype)>& beforeChunk = nullptr);

/// Puts `text` on the clipboard and pastes it into the focused application, as delivery does.
PostResult pasteText(KeyEventPoster& poster, Pasteboard& pasteboard, const QString& text);

/// Gives all keyboards of the session another layout, e.g. "us" or "us,ru" or "us -variant dvorak".
void setLayout(const std::string& layout);

/// What a program prints on its standard output. Throws std::runtime_error when it fails.
std::string outputOf(const std::string& command);

/// The keymap of the session's keyboard, with every symbol, type, action and indicator.
std::string keymap();

/// What is down and locked on the session's keyboard, e.g. "keys 38 50, held 1, locked 2"; empty when the
/// keyboard is at rest.
std::string keyboardState();

} // namespace talvera::test
