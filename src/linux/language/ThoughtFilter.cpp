// SPDX-License-Identifier: MIT
#include "linux/language/ThoughtFilter.h"

#include <algorithm>

namespace talvera {

namespace {

const QString begin = QStringLiteral("<think>");
const QString end = QStringLiteral("</think>");

/// How much of the end of `text` could be the begin of `mark`.
qsizetype begunAtTheEnd(const QString& text, const QString& mark) {
    for (auto count = std::min(text.size(), mark.size() - 1); count > 0; --count) {
        if (text.endsWith(mark.left(count)))
            return count;
    }
    return 0;
}

qsizetype whiteSpaceAtTheBegin(const QString& text) {
    const auto* const first =
        std::find_if(text.cbegin(), text.cend(), [](QChar character) { return !character.isSpace(); });
    return first - text.cbegin();
}

} // namespace

void ThoughtFilter::take(const QString& piece) {
    m_pending += piece;
    goOn();
}

void ThoughtFilter::takeEnd() {
    if (!m_isThinking)
        m_text += m_pending;
    m_pending.clear();
}

void ThoughtFilter::goOn() {
    for (;;) {
        if (m_isThinking) {
            const auto at = m_pending.indexOf(end);
            if (at < 0) {
                m_pending = m_pending.right(begunAtTheEnd(m_pending, end));
                return;
            }
            m_pending.remove(0, at + end.size());
            m_isThinking = false;
            m_isBehindThoughts = true;
        }
        if (m_isBehindThoughts) {
            m_pending.remove(0, whiteSpaceAtTheBegin(m_pending));
            m_isBehindThoughts = m_pending.isEmpty();
        }
        const auto at = m_pending.indexOf(begin);
        const auto passed = at >= 0 ? at
                                    : m_pending.size() - std::max(begunAtTheEnd(m_pending, begin),
                                                                  begunAtTheEnd(m_pending, end));
        m_hasSpokenThoughts = m_hasSpokenThoughts || m_pending.left(passed).contains(end);
        m_text += m_pending.left(passed);
        m_pending.remove(0, at >= 0 ? at + begin.size() : passed);
        if (at < 0)
            return;
        m_isThinking = true;
    }
}

} // namespace talvera
