// SPDX-License-Identifier: MIT
#pragma once

#include "linux/wayland/kwin/KwinShortcuts.h"
#include "platform/keyboard/EventTap.h"

#include <QString>

#include <memory>
#include <optional>
#include <set>
#include <vector>

namespace talvera {

class KeyboardLayout;

/// Taps on the keyboards of a Plasma session, by shortcuts that KWin keeps for us while we run.
///
/// They are chords with exactly these modifiers. A key held by itself isn't watched: KWin can't tell its
/// sides apart, and from version 6 on tells of it only when it is let go. KWin swallows a chord whether we
/// listen or not, and never waits for us, so there is no time-out. It tells of the end of a press when the
/// first of the chord's keys goes up.
class KwinEventTaps final : public EventTapFactory {
public:
    /// `layout` tells what keys write, since KWin knows chords by that. It outlives this. Must outlive its
    /// taps.
    KwinEventTaps(KeyboardLayout& layout, std::shared_ptr<KwinGuard> guard);
    KwinEventTaps(const KwinEventTaps&) = delete;
    KwinEventTaps& operator=(const KwinEventTaps&) = delete;
    ~KwinEventTaps() override;

    std::unique_ptr<EventTap> create(EventTap::Callback callback) override;
    bool hearsKeysAlone() const override { return false; }

private:
    class Tap;
    struct Member {
        EventTap::Callback callback;
        bool isEnabled = false;
        std::optional<KeyChord> chord{};
        bool isHeld = true;                  ///< the end of a press matters, too
        std::optional<WatchResult> result{}; ///< what has come of the chord
        EventTap* tap = nullptr;             ///< none when it has gone
    };
    using MemberPtr = std::shared_ptr<Member>;

    /// Has KWin keep what the enabled taps wait for, and nothing else.
    void listen();
    WatchResult hold(const KeyChord& chord);
    void remove(const MemberPtr& member);
    void pressed(const QString& action);
    void released(const QString& action);
    void changed(const QString& action, bool isOurs);
    void releaseAll();
    void deliver(const QString& action, KeyEventType type);

    KeyboardLayout& m_layout;
    KwinShortcuts m_shortcuts;
    std::vector<MemberPtr> m_members; // the oldest first
    std::set<QString> m_kept;         // what KWin keeps for us, by the actions
    std::set<QString> m_down;
};

} // namespace talvera
