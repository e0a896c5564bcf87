// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <memory>

namespace talvera {

enum class KeyPhase { Down, Up };

/// What became of a key event that was asked for. Only the first of them has been posted.
enum class PostResult {
    Posted,
    NotMakeable, ///< the keyboard has no way to make this one; others can still be made
    TargetLost,  ///< the keys would now go elsewhere than to the session's target
    CutOff,      ///< the way to the keyboard is gone: nothing can be posted any more
};

/// Where the keys went at one moment: an application and its window, as the session knows them.
class TypingTarget {
public:
    TypingTarget() = default;
    TypingTarget(const TypingTarget&) = delete;
    TypingTarget& operator=(const TypingTarget&) = delete;
    virtual ~TypingTarget() = default;
};
using TypingTargetPtr = std::shared_ptr<const TypingTarget>;

/// One text being typed. Destroying it leaves keyboard and layout as they were found.
class TypingSession {
public:
    virtual ~TypingSession() = default;

    /// Posts the key down or key up of the session's chunk number `index`. The chunk reaches the focused
    /// application as it stands, whatever the layout and whatever modifiers the user holds; of control
    /// characters only line breaks and tabs exist on a keyboard. Before each key down the session makes sure
    /// that the keys still go to its target; pop-ups of the target's application, such as menus and
    /// completion lists, are part of it.
    virtual PostResult post(qsizetype index, KeyPhase phase) = 0;
};

/// Posts key events to the focused application. Used by one thread at a time.
class KeyEventPoster {
public:
    virtual ~KeyEventPoster() = default;

    /// A text will be typed or pasted before long: what of the work for it can be done now saves time then.
    virtual void prepare() {}

    /// Where the keys go now. Never null. Any thread, also while another one types.
    virtual TypingTargetPtr focusedTarget() = 0;

    /// False when something on the way to `target`, such as an input method, may change what we type. What is
    /// pasted comes as it stands.
    virtual bool isTypingFaithful([[maybe_unused]] const TypingTargetPtr& target) { return true; }

    /// Prepares to type `chunks`, each a user-perceived character with the white space behind it. Knowing
    /// them all lets the platform make ready for characters that the layout lacks. Never null. The poster
    /// outlives the session, and one session ends before the next begins. With `target`, nothing is typed
    /// into anything else; without, the keys go wherever the focus is.
    virtual std::unique_ptr<TypingSession> beginTyping(const QStringList& chunks,
                                                       const TypingTargetPtr& target) = 0;

    /// Posts the key down or key up of the chord that pastes in the focused application, with exactly the
    /// chord's modifiers. With `target`, the key goes down nowhere else.
    virtual PostResult postPaste(KeyPhase phase, const TypingTargetPtr& target) = 0;
};

} // namespace talvera
