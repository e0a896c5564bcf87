// SPDX-License-Identifier: MIT
#include "language/AnswerSanitiser.h"

#include "text/Characters.h"

#include <algorithm>
#include <array>

namespace talvera {

namespace {

constexpr std::array tags{QLatin1String("<clean>"), QLatin1String("</raw>"), QLatin1String("<raw>")};
constexpr std::array stopMarkers{QLatin1String("</clean>"), QLatin1String("<|eot_id|>"),
                                 QLatin1String("<|start_header_id|>")};

/// One more than the longest mark has.
constexpr std::size_t heldBack = 20;

} // namespace

QString AnswerSanitiser::take(const QString& content) {
    // By code units, since a snapshot may end within a character.
    const bool goesOn = content.size() > m_previous.size() && content.startsWith(m_previous);
    QString part;
    if (goesOn) {
        m_buffer += QStringView(content).mid(m_previous.size());
        removeTags();
        m_hasEnded = cutAtStopMarker();
        const auto count = characterCount(m_buffer);
        part = passOn(m_hasEnded ? count : count - std::min(count, heldBack));
    }
    m_previous = content;
    return part;
}

QString AnswerSanitiser::flush() {
    return passOn(characterCount(m_buffer));
}

void AnswerSanitiser::removeTags() {
    for (const auto tag : tags) {
        for (auto at = m_buffer.indexOf(tag); at >= 0; at = m_buffer.indexOf(tag)) {
            if (characterCount(m_buffer.left(at)) < m_emitted)
                m_emitted -= std::min<std::size_t>(m_emitted, static_cast<std::size_t>(tag.size()));
            m_buffer.remove(at, tag.size());
        }
    }
}

/// At the first of the list that is there at all.
bool AnswerSanitiser::cutAtStopMarker() {
    for (const auto marker : stopMarkers) {
        if (const auto at = m_buffer.indexOf(marker); at >= 0) {
            m_buffer.truncate(at);
            return true;
        }
    }
    return false;
}

QString AnswerSanitiser::passOn(std::size_t upTo) {
    if (upTo <= m_emitted)
        return {};
    const auto all = characters(m_buffer);
    const auto begin = all[m_emitted].data() - QStringView(m_buffer).data();
    const auto end = upTo < all.size() ? all[upTo].data() - QStringView(m_buffer).data() : m_buffer.size();
    m_emitted = upTo;
    return m_buffer.mid(begin, end - begin);
}

} // namespace talvera
