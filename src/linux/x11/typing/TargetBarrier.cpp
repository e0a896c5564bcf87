// SPDX-License-Identifier: MIT
#include "linux/x11/typing/TargetBarrier.h"

#include "linux/support/processes.h"
#include "linux/x11/server/FocusedWindow.h"
#include "linux/x11/server/eventType.h"
#include "linux/x11/typing/InputMethod.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <thread>
#include <utility>

namespace talvera {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

// For applications that neither answer nor let us see whether they are busy.
constexpr milliseconds blindWait{100};
// An application that is asleep has read what the server had written by then, so looking twice suffices.
constexpr milliseconds sleepProbe{8};
// For longer than that nobody waits for a text.
constexpr milliseconds methodPatience{3000};
constexpr std::uint32_t firstStamp = 0x5a000000;

/// Whether a process has nothing to do; nothing if there is no way to know.
std::optional<bool> isAsleep(pid_t process) {
    const auto state = processState(process);
    return state ? std::optional(std::string_view("SZX").find(*state) != std::string_view::npos) // or dead
                 : std::nullopt;
}

/// The application has answered, or it never will, because its window is gone.
bool endsWait(const xcb_generic_event_t& event, xcb_window_t window, xcb_atom_t ping, std::uint32_t stamp) {
    constexpr std::uint8_t error = 0;
    switch (eventType(event)) {
    case error:
        return true;
    case XCB_DESTROY_NOTIFY:
        return reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window == window;
    case XCB_CLIENT_MESSAGE: {
        const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(event);
        return message.data.data32[0] == ping && message.data.data32[1] == stamp;
    }
    default:
        return false;
    }
}

} // namespace

void TargetBarrier::begin() {
    m_formerTarget = XCB_NONE;
    m_methodProcesses.reset();
}

bool TargetBarrier::wait(milliseconds limit) {
    const auto deadline = Clock::now() + limit;
    const xcb_window_t target = focusedWindow(m_connection);
    const xcb_window_t former = std::exchange(m_formerTarget, target);
    const bool formerIsGone = former == target || !windowExists(m_connection, former);
    const bool formerIsDone = formerIsGone || waitFor(former, deadline);
    return waitFor(target, deadline) && formerIsDone;
}

bool TargetBarrier::waitForRest(milliseconds limit) {
    const auto deadline = Clock::now() + limit;
    const pid_t process = processOfWindow(m_connection, focusedWindow(m_connection));
    if (process == 0)
        return true;
    // Its first thread is the one that events come to. It also sleeps for a moment whenever it asks the
    // server.
    auto before = sleepsOf({process});
    do {
        std::this_thread::sleep_for(sleepProbe);
        const auto after = sleepsOf({process});
        if (before && after == before)
            return true;
        before = after;
    } while (Clock::now() < deadline);
    return false;
}

bool TargetBarrier::waitFor(xcb_window_t window, Deadline deadline) {
    return waitForReading(window, deadline) && (methodProcesses().empty() || waitForReturn(window, deadline));
}

bool TargetBarrier::waitForReading(xcb_window_t window, Deadline deadline) {
    if (window != XCB_NONE && answersPing(window))
        return ping(window, deadline);
    return waitForProcess(window != XCB_NONE ? processOfWindow(m_connection, window) : 0, deadline);
}

bool TargetBarrier::waitForProcess(pid_t process, Deadline deadline) {
    if (process == 0 || !isAsleep(process)) {
        std::this_thread::sleep_for(blindWait);
        return true;
    }
    int calm = 0;
    while (calm < 2 && Clock::now() < deadline) {
        std::this_thread::sleep_for(sleepProbe);
        calm = isAsleep(process).value_or(true) ? calm + 1 : 0;
    }
    return calm == 2;
}

/// Waits for keys that an input method may still have in its hands. Not for ever: it may be at work for
/// reasons of its own.
bool TargetBarrier::waitForReturn(xcb_window_t window, Deadline deadline) {
    const std::set<pid_t> threads = threadsOf(methodProcesses());
    const auto end = std::min(deadline, Clock::now() + methodPatience);
    // Twice, since engines may have helpers of which we don't know.
    int calm = 0;
    while (calm < 2 && Clock::now() < end) {
        std::this_thread::sleep_for(sleepProbe);
        calm = isAtRest(threads) ? calm + 1 : 0;
    }
    return calm == 2 && waitForReading(window, deadline);
}

const std::set<pid_t>& TargetBarrier::methodProcesses() {
    if (!m_methodProcesses)
        m_methodProcesses = inputMethodProcesses(m_connection);
    return *m_methodProcesses;
}

/// At one moment all of these slept, and the server had nothing to hand on from one to the other: so no key
/// is on its way between them.
bool TargetBarrier::isAtRest(const std::set<pid_t>& threads) {
    const auto before = sleepsOf(threads);
    if (!before)
        return false;
    // Twice: the answer to the first may come before what was sent to others in the same turn.
    m_connection.roundTrip();
    m_connection.roundTrip();
    return sleepsOf(threads) == before;
}

bool TargetBarrier::answersPing(xcb_window_t window) {
    const auto protocols = m_connection.property(window, m_connection.atom("WM_PROTOCOLS"));
    const xcb_atom_t ping = m_connection.atom("_NET_WM_PING");
    return std::find(protocols.begin(), protocols.end(), ping) != protocols.end();
}

bool TargetBarrier::ping(xcb_window_t window, Deadline deadline) {
    xcb_connection_t* xcb = m_connection.get();
    const xcb_window_t root = m_connection.root();
    // The answer is sent to the root window, by some programs to one of these kinds of listeners, by some to
    // the other.
    const std::uint32_t listen = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(xcb, root, XCB_CW_EVENT_MASK, &listen);
    const std::uint32_t listenForEnd = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(xcb, window, XCB_CW_EVENT_MASK, &listenForEnd);

    const xcb_atom_t pingAtom = m_connection.atom("_NET_WM_PING");
    const std::uint32_t stamp = firstStamp + ++m_stamp;
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = m_connection.atom("WM_PROTOCOLS");
    message.data.data32[0] = pingAtom;
    message.data.data32[1] = stamp;
    message.data.data32[2] = window;
    xcb_send_event(xcb, 0, window, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char*>(&message));

    bool isDone = false;
    for (XcbEvent event; !isDone && (event = m_connection.waitForEvent(deadline));)
        isDone = endsWait(*event, window, pingAtom, stamp);

    const std::uint32_t silence = XCB_EVENT_MASK_NO_EVENT;
    xcb_change_window_attributes(xcb, root, XCB_CW_EVENT_MASK, &silence);
    xcb_change_window_attributes(xcb, window, XCB_CW_EVENT_MASK, &silence);
    m_connection.roundTrip();
    while (m_connection.pollEvent()) {
    }
    return isDone;
}

} // namespace talvera
