// SPDX-License-Identifier: MIT
#pragma once

#include "linux/wayland/sway/SwayEvents.h"
#include "linux/wayland/sway/SwayKeyBindings.h"
#include "platform/keyboard/EventTap.h"

#include <QString>

#include <memory>
#include <optional>
#include <set>
#include <vector>

namespace talvera {

/// Taps on the keyboards of a sway session, by bindings that sway is given while it runs.
///
/// Sway tells of chords alone: a key held by itself can't be watched, since nothing tells of its end once
/// another key has been struck with it. It swallows a chord whether we listen or not, and never waits for us,
/// so there is no time-out. It tells of the end of a press when the chord's key goes up, or the second of its
/// modifiers; when another key goes down in between, it never does, and the next press shows that the former
/// has ended.
class SwayEventTaps final : public EventTapFactory {
public:
    /// `socket` is the path of sway's, `layout` as for SwayKeyBindings. Must outlive its taps.
    SwayEventTaps(QString socket, KeyboardLayout& layout);
    SwayEventTaps(const SwayEventTaps&) = delete;
    SwayEventTaps& operator=(const SwayEventTaps&) = delete;
    ~SwayEventTaps() override;

    std::unique_ptr<EventTap> create(EventTap::Callback callback) override;
    bool hearsKeysAlone() const override { return false; }

private:
    class Tap;
    struct Member {
        EventTap::Callback callback;
        bool isEnabled = false;
        std::optional<SwayInterest> interest{};
        std::optional<WatchResult> result{}; ///< what has come of the interest
        EventTap* tap = nullptr;             ///< none when it has gone
    };
    using MemberPtr = std::shared_ptr<Member>;

    /// Listens for what the enabled taps wait for.
    void listen();
    void remove(const MemberPtr& member);
    bool isBroken() const { return !m_events || m_events->hasEnded(); }

    void heard(SwayEvents::Kind kind, const QJsonObject& event);
    void pressed(const KeyEvent& event);
    void released(const KeyEvent& event);
    void reloaded();
    void deliver(const KeyEvent& event);
    bool isEndToldOf(const KeyEvent& press) const;

    const QString m_socket;
    SwayKeyBindings m_bindings;
    std::unique_ptr<SwayEvents> m_events;
    std::vector<MemberPtr> m_members; // the oldest first
    std::set<VirtualKey> m_held;      // of which sway will tell the end
};

} // namespace talvera
