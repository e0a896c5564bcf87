// SPDX-License-Identifier: MIT
#include "FakeKeyEventPoster.h"

#include "text/typeableCharacters.h"

#include <algorithm>

namespace talvera::test {

namespace {

/// A pop-up's application.
QString applicationOf(const QString& receiver) {
    return receiver.section(u'/', 0, 0);
}

} // namespace

struct FakeKeyEventPoster::Target final : TypingTarget {
    explicit Target(QString focused)
        : application(std::move(focused)) {}
    QString application;
};

class FakeKeyEventPoster::Session final : public TypingSession {
public:
    Session(FakeKeyEventPoster& poster, QStringList chunks, TypingTargetPtr target)
        : m_poster(poster)
        , m_chunks(std::move(chunks))
        , m_target(std::move(target)) {
        ++m_poster.m_openSessions;
    }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    ~Session() override {
        --m_poster.m_openSessions;
        m_poster.m_keysDown = std::max(0, m_poster.m_keysDown - m_down);
    }

    PostResult post(qsizetype index, KeyPhase phase) override {
        if (index < 0 || index >= m_chunks.size()) {
            return PostResult::NotMakeable;
        }
        const std::u32string characters = typeableCharacters(m_chunks[index]);
        const int downBefore = m_poster.m_keysDown;
        const auto result =
            m_poster.post({PostedKeyEvent::Kind::Chunk, phase, m_chunks[index]},
                          QString::fromUcs4(characters.data(), qsizetype(characters.size())), m_target);
        m_down += m_poster.m_keysDown - downBefore;
        return result;
    }

private:
    FakeKeyEventPoster& m_poster;
    QStringList m_chunks;
    TypingTargetPtr m_target;
    int m_down = 0;
};

TypingTargetPtr FakeKeyEventPoster::focusedTarget() {
    return std::make_shared<const Target>(applicationOf(m_focused));
}

std::unique_ptr<TypingSession> FakeKeyEventPoster::beginTyping(const QStringList& chunks,
                                                               const TypingTargetPtr& target) {
    m_sessions.append(chunks);
    return std::make_unique<Session>(*this, chunks, target);
}

PostResult FakeKeyEventPoster::postPaste(KeyPhase phase, const TypingTargetPtr& target) {
    return post({PostedKeyEvent::Kind::PasteChord, phase, {}}, {}, target);
}

PostResult FakeKeyEventPoster::post(const PostedKeyEvent& event, const QString& typed,
                                    const TypingTargetPtr& target) {
    if (m_isCutOff) {
        return refused(PostResult::CutOff);
    }
    const auto* meant = dynamic_cast<const Target*>(target.get());
    if (event.phase == KeyPhase::Down && meant && !ignoresTargets &&
        meant->application != applicationOf(m_focused)) {
        return refused(PostResult::TargetLost);
    }
    if (canPost && !canPost(event)) {
        return refused(PostResult::NotMakeable);
    }
    m_events.append(event);
    if (event.phase == KeyPhase::Up) {
        m_keysDown = std::max(0, m_keysDown - 1);
    } else {
        ++m_keysDown;
        const bool isPaste = event.kind == PostedKeyEvent::Kind::PasteChord;
        if ((!isPaste || takesPastes) && !losesTexts) {
            const QString text = isPaste ? m_pasteboard.paste() : typed;
            m_texts[applicationOf(m_focused)] += text;
            if (onText) {
                onText(m_focused, text);
            }
        }
    }
    if (onPost) {
        onPost(event);
    }
    return PostResult::Posted;
}

PostResult FakeKeyEventPoster::refused(PostResult why) const {
    if (onRefused) {
        onRefused(why);
    }
    return why;
}

QString FakeKeyEventPoster::text(const QString& receiver) const {
    const auto found = m_texts.find(receiver);
    return found != m_texts.end() ? found->second : QString();
}

} // namespace talvera::test
