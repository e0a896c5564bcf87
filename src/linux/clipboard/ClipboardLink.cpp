// SPDX-License-Identifier: MIT
#include "linux/clipboard/ClipboardLink.h"

#include <cerrno>
#include <poll.h>
#include <sys/socket.h>
#include <utility>

namespace talvera {

namespace {

using Clock = std::chrono::steady_clock;

/// Waits until the socket is ready for `what`; false at `deadline`.
bool waitFor(int socket, short what, Clock::time_point deadline) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
    pollfd ready{socket, what, 0};
    return left.count() > 0 && (::poll(&ready, 1, static_cast<int>(left.count())) > 0 || errno == EINTR);
}

bool isTemporary(int error) {
    return error == EAGAIN || error == EWOULDBLOCK || error == EINTR;
}

bool sendAll(int socket, std::string_view bytes, Clock::time_point deadline) {
    while (!bytes.empty()) {
        const ssize_t sent = ::send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
        if (sent > 0)
            bytes.remove_prefix(static_cast<std::size_t>(sent));
        else if (!isTemporary(errno) || !waitFor(socket, POLLOUT, deadline))
            return false;
    }
    return true;
}

bool receiveAll(int socket, char* bytes, std::size_t size, Clock::time_point deadline) {
    while (size > 0) {
        const ssize_t count = ::recv(socket, bytes, size, MSG_DONTWAIT);
        if (count > 0) {
            bytes += count;
            size -= static_cast<std::size_t>(count);
        } else if (count == 0 || !isTemporary(errno) || !waitFor(socket, POLLIN, deadline)) {
            return false;
        }
    }
    return true;
}

template <typename Record>
std::string_view bytesOf(const Record& record) {
    return {reinterpret_cast<const char*>(&record), sizeof record};
}

} // namespace

namespace {

std::optional<ClipboardAnswer> request(int socket, const RequestHead& head, std::string_view utf8,
                                       std::chrono::milliseconds limit) {
    const auto deadline = Clock::now() + limit;
    if (!sendAll(socket, bytesOf(head), deadline) || !sendAll(socket, utf8, deadline))
        return std::nullopt;
    ClipboardAnswer answer;
    do { // an answer that came too late for its own request is passed over
        if (!receiveAll(socket, reinterpret_cast<char*>(&answer), sizeof answer, deadline))
            return std::nullopt;
    } while (answer.serial != head.serial);
    return answer;
}

} // namespace

bool sendText(int socket, std::uint32_t serial, std::string_view utf8, std::chrono::milliseconds limit,
              Marked marked) {
    if (utf8.size() > longestClipboardText)
        return false;
    const auto hold = marked == Marked::Spared ? ClipboardRequest::HoldSparing : ClipboardRequest::Hold;
    const RequestHead head{serial, hold, static_cast<std::uint32_t>(utf8.size())};
    const auto answer = request(socket, head, utf8, limit);
    return answer && answer->isHeld == 1;
}

std::optional<ClipboardAnswer> askReport(int socket, std::uint32_t serial, std::chrono::milliseconds limit) {
    return request(socket, {serial, ClipboardRequest::Report, 0}, {}, limit);
}

std::optional<RequestReader::Arrival> RequestReader::read() {
    if (!fill(reinterpret_cast<char*>(&m_head), sizeof m_head, m_headFilled))
        return std::nullopt;
    if (m_head.length > longestClipboardText) {
        m_state = State::HungUp;
        return std::nullopt;
    }
    if (m_head.request == ClipboardRequest::Report) {
        m_headFilled = 0;
        return Arrival{m_head.serial, nullptr, Marked::Taken};
    }
    if (!m_text) {
        m_text = makeWipedText(m_head.length);
        m_textFilled = 0;
    }
    if (!fill(m_text->data(), m_text->size(), m_textFilled))
        return std::nullopt;
    m_headFilled = 0;
    const bool isSparing = m_head.request == ClipboardRequest::HoldSparing;
    return Arrival{m_head.serial, std::exchange(m_text, nullptr), isSparing ? Marked::Spared : Marked::Taken};
}

bool RequestReader::fill(char* bytes, std::size_t size, std::size_t& filled) {
    while (filled < size) {
        const ssize_t count = ::recv(m_socket, bytes + filled, size - filled, MSG_DONTWAIT);
        if (count > 0) {
            filled += static_cast<std::size_t>(count);
        } else if (count < 0 && errno == EINTR) {
            continue;
        } else {
            m_state = count == 0 || !isTemporary(errno) ? State::HungUp : State::Open;
            return false;
        }
    }
    return true;
}

void RequestReader::answer(std::uint32_t serial, const ClipboardReport& report) const {
    const ClipboardAnswer answer{serial, report.isHeld ? 1U : 0U, report.requests};
    // Small enough to find room. If the agent is gone, it isn't needed.
    (void)::send(m_socket, &answer, sizeof answer, MSG_NOSIGNAL | MSG_DONTWAIT);
}

} // namespace talvera
