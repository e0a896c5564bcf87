// SPDX-License-Identifier: MIT
#include "linux/wayland/clipboard/WaylandClipboardService.h"

#include "linux/clipboard/millisecondsUntil.h"
#include "linux/wayland/client/WaylandConnection.h"

#include <vector>

#include <poll.h>

namespace talvera {

void WaylandClipboardService::serveLink(int stop) {
    while (m_reader.state() == RequestReader::State::Open && step(m_socket, stop))
        answerRequests();
}

void WaylandClipboardService::serveRest(int stop) {
    while (m_owner.isNeeded() && step(-1, stop)) {
    }
}

/// Waits until something is to be done for the compositor or a reader, and does it, or until the socket can
/// be read. False when `stop` can be read or the compositor has gone.
bool WaylandClipboardService::step(int socket, int stop) {
    std::vector<pollfd> sources{{socket, POLLIN, 0}, {stop, POLLIN, 0}};
    const auto readers = m_owner.readers();
    sources.insert(sources.end(), readers.begin(), readers.end());
    const bool isThere = m_connection.await(sources, millisecondsUntil(m_owner.nextDeadline()));
    m_owner.serveReaders();
    return isThere && !m_owner.isFinished() && sources[1].revents == 0;
}

void WaylandClipboardService::answerRequests() {
    while (auto arrival = m_reader.read()) {
        if (arrival->text)
            m_reader.answer(arrival->serial, {m_owner.own(std::move(arrival->text), arrival->marked), 0});
        else
            m_reader.answer(arrival->serial, m_owner.report());
    }
}

} // namespace talvera
