// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/server/X11Connection.h"

#include <QObject>
#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace talvera {

/// Hands the events of a connection over on the event loop of the thread that makes it: those that arrive,
/// and those that had been read already while an answer was waited for, which wake no event loop by
/// themselves. Rests for good when the server is gone. On a thread without an event loop only drain() hands
/// events over.
class X11EventPump {
public:
    using Handle = std::function<void(const xcb_generic_event_t& event)>;
    using Settle = std::function<void()>;

    /// `handle` gets each event, and `settle` is called when there is none left of some. Both may ask the
    /// server. One pump for a connection, which outlives it.
    X11EventPump(X11Connection& connection, Handle handle, Settle settle = {});
    ~X11EventPump();
    X11EventPump(const X11EventPump&) = delete;
    X11EventPump& operator=(const X11EventPump&) = delete;

    /// Hands over what is there now, for a caller that can't wait for the event loop. Does nothing while
    /// events are being handed over.
    void drain();

private:
    void drainSoon();

    X11Connection& m_connection;
    Handle m_handle;
    Settle m_settle;
    QObject m_context; ///< turns of the event loop that come after our end do nothing
    std::unique_ptr<QSocketNotifier> m_readable;
    bool m_isDraining = false;
    bool m_willDrain = false;
};

} // namespace talvera
