// SPDX-License-Identifier: MIT
#pragma once

#include "linux/atspi/AtspiDescription.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>

namespace talvera {

/// Remembers which object each application had in focus last, from what the applications announce.
///
/// An application whose window loses the keyboard announces that its object has lost the focus, and it does
/// so too while a hotkey of ours is held down, although the user is still in it. So a loss is not heeded:
/// which application is in front is the window manager's to say, and what that one has in focus is what it
/// had last.
class AtspiFocusMemory {
public:
    void focusGained(const AtspiObject& object);
    void windowActivated(const AtspiObject& window);
    void windowDeactivated(const AtspiObject& window);

    std::optional<AtspiObject> lastFocused(const std::string& service) const;

private:
    struct Application {
        std::string focusedPath; ///< empty when nothing is known to have the focus
        std::string windowPath;  ///< of the window that was active last
        bool inactive = false;
        std::uint64_t lastEvent = 0;
    };

    Application& touched(const std::string& service);

    std::map<std::string, Application> m_applications;
    std::uint64_t m_events = 0;
};

} // namespace talvera
