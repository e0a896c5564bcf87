// SPDX-License-Identifier: MIT
#pragma once

#include "linux/support/FileDescriptor.h"

#include <condition_variable>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

struct wl_array;
struct wl_callback;
struct zwlr_foreign_toplevel_handle_v1;
struct zwlr_foreign_toplevel_manager_v1;

namespace talvera {

class WaylandConnection;

/// Knows the windows and which of them has the keyboard, by what the compositor tells. A thread of its own
/// listens, since the compositor drops programs that don't; it sleeps as long as nothing changes. Any thread.
class Toplevels {
public:
    /// A number that no other window ever gets.
    using Window = std::uint64_t;

    struct Toplevel {
        Window number = 0;
        std::string applicationId;
        std::uint64_t activation = 0; ///< the greatest of all is that of the window that became active last
        bool isActive = false;
    };

    struct Look {
        std::optional<Window> window; ///< nothing: none, as on an empty workspace or under a locked screen
    };

    /// Null where the compositor tells nothing of windows.
    static std::unique_ptr<Toplevels> open(std::unique_ptr<WaylandConnection> connection);
    ~Toplevels();
    Toplevels(const Toplevels&) = delete;
    Toplevels& operator=(const Toplevels&) = delete;

    /// The window that has the keyboard now, by the compositor's own answer. Nothing when it has gone, or
    /// doesn't answer in time.
    std::optional<Look> look();

    /// What the compositor has told so far.
    std::vector<Toplevel> known() const;

    /// The one that has the keyboard; null when none has.
    static const Toplevel* activeOf(const std::vector<Toplevel>& toplevels);

    /// Asks for the window to come to the front.
    void activate(Window window);

    /// The compositor has gone, or speaks to us no more.
    bool isGone() const;

private:
    /// What the compositor's events are told to.
    struct Listener;
    Toplevels(std::unique_ptr<WaylandConnection> connection, zwlr_foreign_toplevel_manager_v1* manager);
    void wake();
    void listen();
    bool takeQuestion();
    void activateNow(Window window);
    void add(zwlr_foreign_toplevel_handle_v1* handle);
    void setActive(zwlr_foreign_toplevel_handle_v1* handle, bool isActive);
    void remove(zwlr_foreign_toplevel_handle_v1* handle);
    void publish();
    void answer();

    const std::unique_ptr<WaylandConnection> m_connection;
    const FileDescriptor m_wake; ///< readable when there is a question, or the end has come

    // Of the thread alone
    zwlr_foreign_toplevel_manager_v1* const m_manager;
    std::map<zwlr_foreign_toplevel_handle_v1*, Toplevel> m_toplevels;
    Window m_lastNumber = 0;
    std::uint64_t m_lastActivation = 0;
    wl_callback* m_pending = nullptr; ///< the compositor is being asked …
    std::uint64_t m_pendingFor = 0;   ///< … for the questions up to this one

    mutable std::mutex m_mutex; // guards what follows
    std::condition_variable m_changed;
    std::uint64_t m_asked = 0;
    std::uint64_t m_answered = 0;
    bool m_isEnding = false;
    bool m_isGone = false;
    std::optional<Window> m_wanted; ///< is to come to the front
    std::vector<Toplevel> m_known;

    std::thread m_thread;
};

} // namespace talvera
