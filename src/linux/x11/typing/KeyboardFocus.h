// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/server/X11Connection.h"
#include "platform/keyboard/KeyEventPoster.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <sys/types.h>
#include <vector>

namespace talvera {

/// The window that had the keyboard at one moment, and its application.
struct X11Target final : TypingTarget {
    xcb_window_t active = XCB_NONE;    ///< by the window manager's word
    xcb_window_t focus = XCB_NONE;     ///< by the server's: often a part of the active window
    xcb_window_t outermost = XCB_NONE; ///< of the application's own windows around the focus
    bool isPopup = false;              ///< the window behind it is the target as well
    pid_t process = 0;                 ///< 0 if that can't be known
};

/// Where the next key would go, as seen from a target.
enum class KeyDestination {
    Target,
    Nobody,    ///< no window has the focus, as it happens for a moment when it moves
    Grab,      ///< another program has grabbed the keyboard, or our own hotkey has
    Elsewhere, ///< another window has the focus, or something like a locked screen has come up
};

/// Knows which window gets the keys, and notices when that changes. Any thread.
class KeyboardFocus {
public:
    /// How long current() waits for a focus that is moving.
    static constexpr std::chrono::milliseconds movePatience{200};

    /// Needs a connection of its own: it throws away what else arrives there.
    explicit KeyboardFocus(X11Connection& connection, std::chrono::milliseconds patience = movePatience)
        : m_connection(connection)
        , m_patience(patience) {}

    /// The target that the keys go to now; an empty one if there is none or the server is gone. Takes longer
    /// than some round trips only as long as window manager and server don't agree on the focus, as when it
    /// moves.
    std::shared_ptr<const X11Target> current();

    /// From now on destination() knows of keyboard grabs that begin. Until unwatch().
    void watch(const X11Target& target);
    void unwatch();

    /// One round trip, as long as nothing has changed. Pop-ups of the target's application are the target.
    KeyDestination destination(const X11Target& target);

    /// The window of the target that had the focus when destination() last answered so. Never waits.
    xcb_window_t targetWindow() const { return m_targetWindow; }

private:
    struct Place {
        xcb_window_t active = XCB_NONE;
        xcb_window_t focus = XCB_NONE;
    };

    Place place();
    Place settledPlace();
    bool isSettled(const Place& place);
    std::optional<xcb_window_t> windowManager();
    bool isOfWindowManager(xcb_window_t window);
    void noteGrabs();
    void listenTo(xcb_window_t window, bool listen);
    KeyDestination grabDestination(const X11Target& target);
    bool isWindow(xcb_window_t window) const;
    bool isInside(xcb_window_t window, xcb_window_t whole);
    bool isPartOf(const X11Target& target, xcb_window_t window);
    bool isOfOneApplication(xcb_window_t one, xcb_window_t other);
    bool isOfApplication(const X11Target& target, xcb_window_t window);
    bool isPopup(xcb_window_t window);
    bool coversScreen(xcb_window_t window);
    xcb_window_t outermost(xcb_window_t window);
    std::vector<xcb_window_t> unmanagedWindows();

    std::mutex m_mutex;
    X11Connection& m_connection;
    const std::chrono::milliseconds m_patience;
    std::set<xcb_window_t> m_watched; ///< windows of the target that have had the focus
    bool m_isGrabbed = false;
    std::atomic<xcb_window_t> m_targetWindow = XCB_NONE;
};

} // namespace talvera
