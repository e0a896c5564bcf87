// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <memory>

namespace talvera {

enum class KeyPhase { Down, Up };

/// One text being typed. Destroying it leaves keyboard and layout as they were found.
class TypingSession {
public:
    virtual ~TypingSession() = default;

    /// Posts the key down or key up of the session's chunk number `index`. The chunk reaches the focused
    /// application as it stands, whatever the layout and whatever modifiers the user holds; of control
    /// characters only line breaks and tabs exist on a keyboard. False when the event could not be made.
    virtual bool post(qsizetype index, KeyPhase phase) = 0;
};

/// Posts key events to the focused application. Used by one thread at a time.
class KeyEventPoster {
public:
    virtual ~KeyEventPoster() = default;

    /// A text will be typed or pasted before long: what of the work for it can be done now saves time then.
    virtual void prepare() {}

    /// Prepares to type `chunks`, each a user-perceived character with the white space behind it. Knowing
    /// them all lets the platform make ready for characters that the layout lacks. Never null. The poster
    /// outlives the session, and one session ends before the next begins.
    virtual std::unique_ptr<TypingSession> beginTyping(const QStringList& chunks) = 0;

    /// Posts the key down or key up of the chord that pastes in the focused application, with exactly the
    /// chord's modifiers. False when the event could not be made.
    virtual bool postPaste(KeyPhase phase) = 0;
};

} // namespace talvera
