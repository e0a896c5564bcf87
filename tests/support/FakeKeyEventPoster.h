// SPDX-License-Identifier: MIT
#pragma once

#include "FakePasteboard.h"
#include "platform/keyboard/KeyEventPoster.h"

#include <QList>

#include <functional>
#include <map>

namespace talvera::test {

/// One key event that was posted, or that could not be made.
struct PostedKeyEvent {
    enum class Kind { Chunk, PasteChord };

    Kind kind = Kind::Chunk;
    KeyPhase phase = KeyPhase::Down;
    QString chunk; ///< what was typed; empty for the chord

    bool operator==(const PostedKeyEvent&) const = default;
};

/// A keyboard in front of several applications: what is typed or pasted collects at the one that has the
/// focus.
class FakeKeyEventPoster final : public KeyEventPoster {
public:
    /// Has the focus at the start.
    static inline const QString firstReceiver = QStringLiteral("first");

    explicit FakeKeyEventPoster(FakePasteboard& pasteboard)
        : m_pasteboard(pasteboard) {}

    TypingTargetPtr focusedTarget() override;
    std::unique_ptr<TypingSession> beginTyping(const QStringList& chunks,
                                               const TypingTargetPtr& target) override;
    PostResult postPaste(KeyPhase phase, const TypingTargetPtr& target) override;

    /// The focus goes to another application, or to a pop-up of one, such as "first/menu".
    void focus(const QString& receiver) { m_focused = receiver; }
    const QString& focusedReceiver() const { return m_focused; }

    bool typesFaithfully = true;
    bool isTypingFaithful(const TypingTargetPtr&) override { return typesFaithfully; }

    /// The keys go down, and the focused application gets nothing: no real one is like that.
    bool losesTexts = false;
    /// The keys go wherever the focus is, whatever their target: nor is any like that.
    bool ignoresTargets = false;

    /// Whether the applications know the chord that pastes.
    bool takesPastes = true;

    /// From now on no event can be posted any more. The keyboard lets go of what we hold down on it.
    void cutOff() {
        m_isCutOff = true;
        m_keysDown = 0;
    }
    void reconnect() { m_isCutOff = false; }

    /// What the receiver has got so far, by its pop-ups too.
    QString text(const QString& receiver = firstReceiver) const;
    /// What has arrived anywhere.
    const std::map<QString, QString>& texts() const { return m_texts; }

    /// All events in the order of their posting; those that could not be made are not among them.
    const QList<PostedKeyEvent>& events() const { return m_events; }

    /// The texts of the sessions begun so far, each as its list of chunks.
    const QList<QStringList>& sessions() const { return m_sessions; }

    /// Sessions begun and not yet destroyed, and keys that are down. Both are 0 when nobody types.
    int openSessions() const { return m_openSessions; }
    int keysDown() const { return m_keysDown; }

    /// Asked before each event; answering false makes the event one that can't be made.
    std::function<bool(const PostedKeyEvent&)> canPost;

    /// Told of each event that was posted, for instance to note the time.
    std::function<void(const PostedKeyEvent&)> onPost;

    /// Told of each event that is refused, and why.
    std::function<void(PostResult)> onRefused;

    /// Told of what a receiver gets: a chunk or a paste, at its key down.
    std::function<void(const QString& receiver, const QString& text)> onText;

private:
    class Session;
    struct Target;

    PostResult post(const PostedKeyEvent& event, const QString& typed, const TypingTargetPtr& target);
    PostResult refused(PostResult why) const;

    FakePasteboard& m_pasteboard;
    QString m_focused = firstReceiver;
    bool m_isCutOff = false;
    std::map<QString, QString> m_texts; ///< by application
    QList<PostedKeyEvent> m_events;
    QList<QStringList> m_sessions;
    int m_openSessions = 0;
    int m_keysDown = 0;
};

} // namespace talvera::test
