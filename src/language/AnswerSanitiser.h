// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <cstddef>

namespace talvera {

/// Takes the marks out of a language model's answer while it grows. A small model echoes the tags that it was
/// given, adds some of its own, or goes on behind its own end; so the last characters of the answer are held
/// back until they can't be the beginning of a mark. One object serves one answer.
class AnswerSanitiser {
public:
    /// The answer is `content` so far: what of it can be passed on now, often nothing. A snapshot that does
    /// not go on where the one before it ended adds nothing.
    QString take(const QString& content);

    /// A mark has ended the answer; what the model writes behind it is none of it.
    bool hasEnded() const { return m_hasEnded; }

    /// What is still held back when the answer is over.
    QString flush();

private:
    void removeTags();
    bool cutAtStopMarker();
    QString passOn(std::size_t upTo);

    QString m_previous;        ///< the last snapshot
    QString m_buffer;          ///< the answer so far, without what has been removed
    std::size_t m_emitted = 0; ///< characters of the buffer that have been passed on
    bool m_hasEnded = false;
};

} // namespace talvera
