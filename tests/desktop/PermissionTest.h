// SPDX-License-Identifier: MIT
#pragma once

#include "HUDOnScreen.h"
#include "PanelTest.h"

namespace talvera::test {

/// A test in which something is missing for a dictation, on a desktop whose settings are stand-ins.
class PermissionTest : public PanelTest {
protected:
    PermissionTest() { home.set("XDG_CURRENT_DESKTOP", "XFCE"); }

    /// Whether the programs that the agent has opened come to be these.
    bool opens(const QStringList& expected) const {
        return eventually([&] { return home.calls() == expected; });
    }
    bool cardComes() {
        return eventually([this] { return hud.place().has_value(); });
    }
    bool cardGoes() {
        return eventually([this] { return !hud.place(); });
    }

    HUDOnScreen hud;
};

} // namespace talvera::test
