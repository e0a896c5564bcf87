// SPDX-License-Identifier: MIT
#pragma once

#include "linux/atspi/AtspiBus.h"
#include "linux/atspi/AtspiFocusMemory.h"
#include "linux/atspi/GlibPtr.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <thread>

namespace talvera {

/// Follows the focus of all applications on the accessibility bus, and tells what has it in one of them. It
/// works on a thread of its own. Where there is no accessibility bus, or when it goes, nothing is known; when
/// one comes, the listener is there.
class AtspiListener {
public:
    /// Starts the thread. `sessionBus` is an address; without one, there is nothing to hear.
    explicit AtspiListener(std::string sessionBus);
    ~AtspiListener();
    AtspiListener(const AtspiListener&) = delete;
    AtspiListener& operator=(const AtspiListener&) = delete;

    /// The address of this session's bus; empty when there is none.
    static std::string sessionBusAddress();

    /// Runs `work` on the listener's thread, where all the functions below are to be called. Any thread.
    void post(std::function<void()> work);

    /// What has the focus in the application with this process, or would have it if no hotkey were held down.
    /// Nothing when the application doesn't tell.
    std::optional<AtspiDescription> focused(pid_t pid, AtspiBus::Deadline deadline);

    /// Tells all applications of the session that an assistive client is there, or no more, and then calls
    /// `done` with the success. Starts the accessibility bus if need be, which takes its time. Holds also
    /// when that service is restarted.
    void setEnabled(bool enabled, std::function<void(bool)> done);

private:
    using OnReply = std::function<void(GVariant* reply)>; ///< null when the call failed

    void run();
    /// Calls `connected` with null when no bus is there.
    void connectTo(const std::string& address,
                   void (AtspiListener::*connected)(GlibPtr<GDBusConnection> connection));
    void onSession(GlibPtr<GDBusConnection> connection);
    void follow(GDBusConnection* session);
    void onAccessibilityBus(GlibPtr<GDBusConnection> connection);
    void callSession(const char* interface, const char* method, GVariant* arguments, OnReply onReply);
    void accessibilityStarted();
    void findAccessibilityBus();
    void loseAccessibilityBus();
    std::vector<std::string> servicesOf(pid_t pid, AtspiBus::Deadline deadline);
    std::optional<AtspiDescription> focusedIn(const std::string& service, AtspiBus::Deadline deadline);

    const std::string m_sessionBus;
    GlibPtr<GMainContext> m_context;
    GlibPtr<GMainLoop> m_loop;
    GlibPtr<GCancellable> m_ending;
    std::vector<std::function<void()>> m_onceConnected; ///< or once it is clear that we never will be
    int m_underWay = 0;                                 ///< calls whose end would find us gone
    bool m_connecting = true;
    std::optional<bool> m_enabled; ///< what was asked for last
    GlibPtr<GDBusConnection> m_session;
    std::unique_ptr<AtspiBus> m_bus;
    AtspiFocusMemory m_memory;
    std::map<std::string, pid_t> m_processes; ///< of the applications on the bus, by their names there
    std::thread m_thread;
};

} // namespace talvera
