// SPDX-License-Identifier: MIT
#include "linux/x11/server/X11EventPump.h"

#include <QAbstractEventDispatcher>

#include <utility>

namespace talvera {

X11EventPump::X11EventPump(X11Connection& connection, Handle handle, Settle settle)
    : m_connection(connection)
    , m_handle(std::move(handle))
    , m_settle(std::move(settle)) {
    connection.onEventsKept = [this] { drainSoon(); };
    if (!QAbstractEventDispatcher::instance())
        return;
    if (!connection.isBroken()) {
        m_readable = std::make_unique<QSocketNotifier>(connection.descriptor(), QSocketNotifier::Read);
        QObject::connect(m_readable.get(), &QSocketNotifier::activated, &m_context, [this] { drain(); });
    }
    drainSoon(); // of what the connection has been asked before
}

X11EventPump::~X11EventPump() {
    m_connection.onEventsKept = nullptr;
}

void X11EventPump::drain() {
    if (std::exchange(m_isDraining, true))
        return;
    bool some = false;
    while (const auto event = m_connection.pollEvent()) {
        m_handle(*event);
        some = true;
    }
    m_isDraining = false;
    if (some && m_settle)
        m_settle();
    m_connection.flush();
    if (m_connection.isBroken() && m_readable)
        m_readable->setEnabled(false); // a lost connection stays readable for ever
}

void X11EventPump::drainSoon() {
    if (m_isDraining || std::exchange(m_willDrain, true))
        return;
    QMetaObject::invokeMethod(
        &m_context,
        [this] {
            m_willDrain = false;
            drain();
        },
        Qt::QueuedConnection);
}

} // namespace talvera
