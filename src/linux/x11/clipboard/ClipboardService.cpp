// SPDX-License-Identifier: MIT
#include "linux/x11/clipboard/ClipboardService.h"

#include "linux/clipboard/millisecondsUntil.h"

#include <iterator>
#include <poll.h>

namespace talvera {

namespace {

using Clock = SelectionOwner::Clock;

constexpr std::chrono::seconds handOverPatience{5};

} // namespace

bool ClipboardService::serveLink(int stop) {
    while (m_reader.state() == RequestReader::State::Open && step(m_socket, stop, std::nullopt))
        answerRequests();
    return m_reader.state() == RequestReader::State::HungUp;
}

void ClipboardService::serveRest(int stop) {
    while (m_owner.isNeeded() && step(-1, stop, std::nullopt)) {
    }
}

bool ClipboardService::handOver() {
    const auto limit = Clock::now() + handOverPatience;
    if (!m_owner.beginHandOver())
        return false;
    while (m_owner.isBusy() && Clock::now() < limit && step(-1, -1, limit)) {
    }
    return m_owner.handOverSucceeded();
}

bool ClipboardService::step(int socket, int stop, std::optional<Clock::time_point> limit) {
    if (const auto stalled = m_owner.nextDeadline(); stalled && (!limit || *stalled < *limit))
        limit = stalled;
    // Answers that were waited for may have brought events along, which poll() knows nothing of.
    if (XcbEvent event = m_connection.pollEvent()) {
        m_owner.handle(*event);
        return true;
    }
    m_connection.flush();
    pollfd sources[] = {{m_connection.descriptor(), POLLIN, 0}, {socket, POLLIN, 0}, {stop, POLLIN, 0}};
    ::poll(sources, std::size(sources), millisecondsUntil(limit));
    m_owner.dropStalled(Clock::now());
    return !m_connection.isBroken() && sources[2].revents == 0;
}

void ClipboardService::answerRequests() {
    while (auto arrival = m_reader.read()) {
        if (arrival->text)
            m_reader.answer(arrival->serial, {m_owner.own(std::move(arrival->text)), 0});
        else
            m_reader.answer(arrival->serial, m_owner.report());
    }
}

} // namespace talvera
