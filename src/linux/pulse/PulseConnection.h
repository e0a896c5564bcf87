// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Lifetime.h"
#include "concurrency/MainActor.h"
#include "concurrency/Published.h"
#include "linux/pulse/PulseLoop.h"
#include "linux/pulse/chooseMicrophone.h"
#include "platform/sound/MicrophonePermission.h"

#include <pulse/context.h>
#include <pulse/introspect.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace talvera {

/// The process's one connection to the sound server, kept open so that a recording starts at once. The server
/// tells it of changes; a server that has gone away is looked for again at each question, so that
/// nothing happens at rest. Outlives the inputs that stand on it.
class PulseConnection {
public:
    /// Begins to connect. `server` is an address as in $PULSE_SERVER; empty: the user's own server.
    explicit PulseConnection(MainActor& mainActor, std::string server = {});
    ~PulseConnection();

    // For the main thread, without the lock.

    /// Whether there is a microphone and we may use it, as last heard.
    AuthorizationStatus status();
    /// Waits until the server has answered, at most `limit`.
    void waitForAnswer(Duration limit);
    /// Calls `done` in a later turn when the server has answered or turned out to be away.
    void whenAnswered(std::function<void()> done);
    /// Calls `changed` in a turn of its own when status() has become another one.
    [[nodiscard]] Subscription observe(std::function<void()> changed);

    PulseLoop& loop() { return m_loop; }

    // With the lock.

    /// Connects if need be and waits for the answer, at most `limit`; false if there was none in time.
    bool settle(Duration limit);
    /// The connection, if the server has answered; else null.
    pa_context* context() const { return m_answered ? m_context : nullptr; }
    const std::optional<Microphone>& microphone() const { return m_microphone; }
    bool isMonitor(const std::string& device) const { return talvera::isMonitor(device, m_sources); }
    /// The server is PipeWire, which only speaks PulseAudio's language.
    bool isPipeWire() const { return m_isPipeWire; }
    /// The server knows us and will not have us.
    bool isRefused() const { return m_refused; }
    /// Gives up a connection whose server has stopped answering. What it may still hold of ours goes with it.
    void drop();

private:
    void connect();
    void onStateChange(pa_context* context);
    void close();
    void fail(int error);
    void refresh();
    void askForSources();
    void onSource(const pa_source_info& info);
    void onAllSources();
    void answer();

    MainActor& m_mainActor;
    std::string m_server;
    Published<AuthorizationStatus> m_announced; // main thread

    // Under the lock.
    pa_context* m_context = nullptr;
    bool m_answered = false; // the server has told its sources
    bool m_refused = false;
    bool m_isPipeWire = false;
    AuthorizationStatus m_status = AuthorizationStatus::NotDetermined;
    std::optional<Microphone> m_microphone;
    std::vector<PulseSource> m_sources;
    std::vector<std::function<void()>> m_waiting;

    // The question that is under way.
    bool m_asking = false;
    bool m_askAgain = false;
    std::string m_newDefault;
    std::vector<PulseSource> m_newSources;

    PulseLoop m_loop;
    Lifetime m_lifetime;
};

} // namespace talvera
