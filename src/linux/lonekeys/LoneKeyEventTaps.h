// SPDX-License-Identifier: MIT
#pragma once

#include "linux/lonekeys/LoneKeyProgram.h"
#include "platform/keyboard/EventTap.h"

#include <QString>

#include <memory>
#include <optional>
#include <set>
#include <vector>

namespace talvera {

/// Taps of a session that tells of chords alone, which hear keys held alone as well, from the helper that the
/// user has installed for it. It hears what no session swallows, so a key held alone does what it does
/// elsewhere, too.
class LoneKeyEventTaps final : public EventTapFactory {
public:
    /// `chords` is the session's own way to chords, null where it has none. `helper` is the program's path.
    LoneKeyEventTaps(std::unique_ptr<EventTapFactory> chords, QString helper);
    LoneKeyEventTaps(const LoneKeyEventTaps&) = delete;
    LoneKeyEventTaps& operator=(const LoneKeyEventTaps&) = delete;
    ~LoneKeyEventTaps() override;

    std::unique_ptr<EventTap> create(EventTap::Callback callback) override;
    bool hearsKeysAlone() const override { return true; }

private:
    class Tap;
    struct Member {
        EventTap::Callback callback;
        bool isEnabled = false;
        std::optional<VirtualKey> key{}; ///< that it waits for alone
    };
    using MemberPtr = std::shared_ptr<Member>;

    /// Has the helper tell what the enabled taps wait for.
    void listen();
    void remove(const MemberPtr& member);
    bool isBroken() const { return !m_keys.empty() && (!m_program || m_program->hasEnded()); }

    void heard(const LoneKeyProgram::News& news);
    std::set<VirtualKey> heldKeys() const;
    void deliver(const KeyEvent& event, VirtualKey waitedFor);

    const std::unique_ptr<EventTapFactory> m_chords;
    const QString m_helper;
    std::vector<MemberPtr> m_members; // the oldest first
    std::set<EvdevCode> m_keys;       ///< that the helper was started for
    std::unique_ptr<LoneKeyProgram> m_program;
    std::set<EvdevCode> m_held;
};

} // namespace talvera
