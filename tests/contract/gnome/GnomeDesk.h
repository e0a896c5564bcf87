// SPDX-License-Identifier: MIT
#pragma once

#include "linux/applications/DesktopEntryCatalog.h"
#include "linux/wayland/gnome/GnomeEventTaps.h"
#include "linux/wayland/gnome/GnomeKeyEventPoster.h"
#include "linux/wayland/gnome/GnomeWorkspace.h"

#include <functional>
#include <memory>

namespace talvera::test {

/// The agent's end of our extension, in the GNOME session that the test runs in.
struct GnomeDesk {
    /// Throws std::runtime_error when the extension doesn't come.
    GnomeDesk();

    /// Runs the event loop until the condition holds; false when it doesn't in time.
    static bool becomes(const std::function<bool()>& condition);

    /// Whether that process comes to have the focus in a field that takes text, or in one that takes none.
    bool isInFront(pid_t process, bool takesText);

    std::shared_ptr<const ShellBus> bus = std::make_shared<const ShellBus>();
    std::shared_ptr<ShellView> view = std::make_shared<ShellView>(bus);
    DesktopEntryCatalog installed{{}, {}};
    GnomeWorkspace workspace{bus, view, installed};
    GnomeKeyEventPoster poster{bus, view};
};

} // namespace talvera::test
