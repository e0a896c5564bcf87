// SPDX-License-Identifier: MIT
#pragma once

#include "linux/wayland/kwin/KwinKeyboard.h"
#include "platform/desktop/SessionAccess.h"

#include <memory>
#include <utility>

namespace talvera {

/// What a Plasma session lets us do: watch chords and see the windows over the session bus, and paste if KWin
/// lets us press keys.
class KwinSessionAccess final : public SessionAccess {
public:
    explicit KwinSessionAccess(std::shared_ptr<KwinKeyboard> keyboard)
        : m_keyboard(std::move(keyboard)) {}

    /// Whether KWin and its shortcuts are on the session bus.
    static bool isKwinThere();

    std::vector<SessionLack> lacks() override;
    bool canWatchKeys() override { return isKwinThere(); }

private:
    const std::shared_ptr<KwinKeyboard> m_keyboard;
};

} // namespace talvera
