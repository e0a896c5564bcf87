// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/keys/X11TapGroup.h"
#include "platform/keyboard/EventTap.h"

#include <memory>

namespace talvera {

/// A member of a group of taps, which outlives it.
class X11EventTap final : public EventTap {
public:
    X11EventTap(X11TapGroup& group, std::shared_ptr<X11Tap> tap);
    X11EventTap(const X11EventTap&) = delete;
    X11EventTap& operator=(const X11EventTap&) = delete;
    ~X11EventTap() override;

    void setEnabled(bool enabled) override;
    WatchResult watchChord(const KeyChord& chord) override;
    WatchResult watchStroke(const KeyChord& chord) override;
    WatchResult watchKey(VirtualKey key) override;
    void watchNothing() override;
    bool isBroken() const override { return m_group.isBroken(); }

private:
    WatchResult watch(const std::optional<KeyInterest>& interest);

    X11TapGroup& m_group;
    const std::shared_ptr<X11Tap> m_tap;
};

} // namespace talvera
