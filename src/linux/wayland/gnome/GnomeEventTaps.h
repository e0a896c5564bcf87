// SPDX-License-Identifier: MIT
#pragma once

#include "linux/wayland/gnome/ShellGrabs.h"
#include "linux/wayland/gnome/ShellView.h"
#include "platform/keyboard/EventTap.h"

#include <QObject>

#include <memory>
#include <optional>
#include <set>
#include <vector>

namespace talvera {

/// Taps on the keyboards of a GNOME session, by chords that its Shell keeps for our extension.
///
/// The Shell tells of chords alone: of a key held by itself it could tell the end, but not that another key
/// has been struck meanwhile. It swallows a chord whether we listen or not, and never waits for us, so there
/// is no time-out. Nor do we wait for the Shell: a chord counts as watched until it answers that somebody has
/// it. While the extension is away nothing is heard, and everything again once it is back.
class GnomeEventTaps final : public EventTapFactory {
public:
    /// Outlives its taps.
    GnomeEventTaps(std::shared_ptr<const ShellBus> bus, std::shared_ptr<ShellView> view);
    GnomeEventTaps(const GnomeEventTaps&) = delete;
    GnomeEventTaps& operator=(const GnomeEventTaps&) = delete;
    ~GnomeEventTaps() override;

    std::unique_ptr<EventTap> create(EventTap::Callback callback) override;
    bool hearsKeysAlone() const override { return false; }

private:
    class Tap;
    struct Member {
        EventTap::Callback callback;
        bool isEnabled = false;
        std::optional<KeyChord> chord{};
        WatchResult told = WatchResult::Watching; ///< what has come of the chord, as its owner knows it
        EventTap* tap = nullptr;                  ///< none when it has gone
    };
    using MemberPtr = std::shared_ptr<Member>;

    /// Listens for what the enabled taps wait for.
    void listen();
    void remove(const MemberPtr& member);
    WatchResult resultOf(const KeyChord& chord) const;
    void tellResults();

    void heard(const ShellAccelerator& accelerator, bool isPress);
    void endPresses();
    void deliver(const KeyEvent& event);

    const std::shared_ptr<ShellView> m_view;
    ShellGrabs m_grabs;
    std::vector<MemberPtr> m_members; // the oldest first
    std::set<VirtualKey> m_held;      // whose ends are still to be told
    QObject m_context;                // what the view tells ends with it
};

} // namespace talvera
