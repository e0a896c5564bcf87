// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/keys/X11KeyWatch.h"
#include "platform/keyboard/EventTap.h"

#include <optional>

namespace talvera {

class X11EventTapFactory;

/// One tap of an X11EventTapFactory.
class X11EventTap final : public EventTap {
public:
    X11EventTap(X11EventTapFactory& factory, Callback callback);
    X11EventTap(const X11EventTap&) = delete;
    X11EventTap& operator=(const X11EventTap&) = delete;
    ~X11EventTap() override;

    void setEnabled(bool enabled) override;
    WatchResult watchChord(const KeyChord& chord) override;
    WatchResult watchKey(std::uint16_t keyCode) override;
    void watchNothing() override;

private:
    friend class X11EventTapFactory;

    WatchResult watch(const std::optional<KeyInterest>& interest);
    bool isWaitingFor(const KeyEvent& event) const;

    X11EventTapFactory& m_factory;
    Callback m_callback;
    bool m_isEnabled = false;
    std::optional<KeyInterest> m_interest;
};

} // namespace talvera
