// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace talvera {

/// Takes out of a growing text what a model thinks aloud between "<think>" and "</think>", and the white
/// space behind it.
class ThoughtFilter {
public:
    /// Appends a piece of any length.
    void take(const QString& piece);

    /// What doesn't belong to the thoughts, as far as that is certain: what could be the begin of a mark is
    /// held back.
    const QString& text() const { return m_text; }

    /// Nothing more comes: what was held back was no mark.
    void takeEnd();

    /// The end of thoughts came that had no begin, so that some of the text was thoughts.
    bool hasSpokenThoughts() const { return m_hasSpokenThoughts; }

private:
    void goOn();

    QString m_pending;
    QString m_text;
    bool m_isThinking = false;
    bool m_isBehindThoughts = false; ///< and nothing but white space has come since
    bool m_hasSpokenThoughts = false;
};

} // namespace talvera
