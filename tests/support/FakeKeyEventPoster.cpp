// SPDX-License-Identifier: MIT
#include "FakeKeyEventPoster.h"

#include "text/typeableCharacters.h"

namespace talvera::test {

class FakeKeyEventPoster::Session final : public TypingSession {
public:
    Session(FakeKeyEventPoster& poster, QStringList chunks)
        : m_poster(poster)
        , m_chunks(std::move(chunks)) {
        ++m_poster.m_openSessions;
    }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    ~Session() override {
        --m_poster.m_openSessions;
        m_poster.m_keysDown -= m_down;
    }

    bool post(qsizetype index, KeyPhase phase) override {
        if (index < 0 || index >= m_chunks.size()) {
            return false;
        }
        const std::u32string characters = typeableCharacters(m_chunks[index]);
        const int downBefore = m_poster.m_keysDown;
        const bool posted = m_poster.post({PostedKeyEvent::Kind::Chunk, phase, m_chunks[index]},
                                          QString::fromUcs4(characters.data(), qsizetype(characters.size())));
        m_down += m_poster.m_keysDown - downBefore;
        return posted;
    }

private:
    FakeKeyEventPoster& m_poster;
    QStringList m_chunks;
    int m_down = 0;
};

std::unique_ptr<TypingSession> FakeKeyEventPoster::beginTyping(const QStringList& chunks) {
    m_sessions.append(chunks);
    return std::make_unique<Session>(*this, chunks);
}

bool FakeKeyEventPoster::postPaste(KeyPhase phase) {
    return post({PostedKeyEvent::Kind::PasteChord, phase, {}}, m_pasteboard.string().value_or(QString()));
}

bool FakeKeyEventPoster::post(const PostedKeyEvent& event, const QString& received) {
    if (canPost && !canPost(event)) {
        return false;
    }
    m_events.append(event);
    if (onPost) {
        onPost(event);
    }
    if (event.phase == KeyPhase::Up) {
        m_keysDown = std::max(0, m_keysDown - 1);
        return true;
    }
    ++m_keysDown;
    m_text += received;
    if (onText) {
        onText(received);
    }
    return true;
}

} // namespace talvera::test
