// SPDX-License-Identifier: MIT
#pragma once

#include "linux/pulse/PulseConnection.h"

#include <pulse/stream.h>

#include <cstddef>
#include <functional>
#include <optional>

namespace talvera {

/// One recording from the microphone. Every function wants the loop's lock held; the callbacks run on the
/// loop's thread.
class PulseRecordStream {
public:
    /// Gets captured frames in order; null data is that many bytes of silence.
    using Receive = std::function<void(const void* data, std::size_t bytes)>;

    /// Who chooses the device: the server, which knows where the user has sent this program before and takes
    /// it along when the default changes, or we, by name.
    enum class Routing { ByServer, ByName };

    /// Begins to open the microphone. `ended` is called when a stream that was open delivers no more, because
    /// its server or its device is gone. Throws PlatformError.
    PulseRecordStream(PulseConnection& connection, const Microphone& microphone, Routing routing,
                      const AudioFormat& format, Receive receive, std::function<void()> ended);
    PulseRecordStream(const PulseRecordStream&) = delete;
    PulseRecordStream& operator=(const PulseRecordStream&) = delete;
    /// Lets go of the microphone.
    ~PulseRecordStream();

    /// Waits until sound can come, at most `limit`. Throws PlatformError.
    void waitUntilOpen(Duration limit);

    /// It is open and can still deliver.
    bool isAlive() const { return m_state == State::Open; }

    /// Calls `caughtUp` as soon as everything that the microphone had heard by now has been received, and
    /// after `limit` in any case.
    void catchUp(Duration limit, std::function<void()> caughtUp);

private:
    enum class State { Opening, Open, Failed, Ended };

    void onStateChange();
    void onReadable();
    void onMoved();
    void onTiming();
    void end(State state);
    void close();
    void finishCatchUp();
    void forgetQuestion();

    PulseConnection& m_connection;
    const Duration m_fragment; ///< how much sound the server gathers before it sends it
    Receive m_receive;
    std::function<void()> m_ended;
    pa_stream* m_stream = nullptr;
    State m_state = State::Opening;
    int m_error = 0;
    std::size_t m_received = 0; // bytes

    std::function<void()> m_caughtUp;
    pa_operation* m_question = nullptr;  // for the latency
    std::optional<std::size_t> m_target; // of m_received
    std::optional<PulseLoop::Timer> m_timer;
};

} // namespace talvera
