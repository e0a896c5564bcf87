// SPDX-License-Identifier: MIT
#pragma once

#include "FakePasteboard.h"
#include "platform/keyboard/KeyEventPoster.h"

#include <QList>

#include <functional>

namespace talvera::test {

/// One key event that was posted, or that could not be made.
struct PostedKeyEvent {
    enum class Kind { Chunk, PasteChord };

    Kind kind = Kind::Chunk;
    KeyPhase phase = KeyPhase::Down;
    QString chunk; ///< what was typed; empty for the chord

    bool operator==(const PostedKeyEvent&) const = default;
};

/// A keyboard in front of one text field: what is typed or pasted collects in `text()`.
class FakeKeyEventPoster final : public KeyEventPoster {
public:
    explicit FakeKeyEventPoster(FakePasteboard& pasteboard)
        : m_pasteboard(pasteboard) {}

    std::unique_ptr<TypingSession> beginTyping(const QStringList& chunks) override;
    bool postPaste(KeyPhase phase) override;

    /// What the focused application has received so far.
    const QString& text() const { return m_text; }

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

    /// Told of what the focused application receives: a chunk or a paste, at its key down.
    std::function<void(const QString&)> onText;

private:
    class Session;

    bool post(const PostedKeyEvent& event, const QString& received);

    FakePasteboard& m_pasteboard;
    QString m_text;
    QList<PostedKeyEvent> m_events;
    QList<QStringList> m_sessions;
    int m_openSessions = 0;
    int m_keysDown = 0;
};

} // namespace talvera::test
