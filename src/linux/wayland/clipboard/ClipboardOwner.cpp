// SPDX-License-Identifier: MIT
#include "linux/wayland/clipboard/ClipboardOwner.h"

#include "linux/wayland/client/WaylandConnection.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace talvera {

namespace {

using Selection = DataControl::Selection;

constexpr std::chrono::seconds transferPatience{15};

/// As Wayland programs ask for a text, and as X programs do.
std::vector<std::string> formatsOf(const std::string& text) {
    std::vector<std::string> formats{"text/plain;charset=utf-8", "text/plain", "UTF8_STRING", "TEXT"};
    const auto isAscii = [](char byte) { return static_cast<unsigned char>(byte) < 0x80; };
    if (std::ranges::all_of(text, isAscii)) // else it means Latin-1
        formats.emplace_back("STRING");
    return formats;
}

} // namespace

std::unique_ptr<ClipboardOwner> ClipboardOwner::open(WaylandConnection& connection) {
    std::unique_ptr<ClipboardOwner> owner(new ClipboardOwner(connection));
    const bool isKnown = owner->m_control && connection.roundTrip(); // what the selections hold now
    return isKnown ? std::move(owner) : nullptr;
}

ClipboardOwner::ClipboardOwner(WaylandConnection& connection)
    : m_connection(connection)
    , m_control(DataControl::open(connection, *this)) {}

ClipboardOwner::~ClipboardOwner() = default;

bool ClipboardOwner::own(WipedText text, Marked marked) {
    const bool isSpared = marked == Marked::Spared && m_control->isForeign(Selection::Primary);
    m_text = std::move(text);
    m_requests = 0;
    m_wantsPrimary = m_control->has(Selection::Primary) && !isSpared;
    const auto formats = formatsOf(*m_text);
    m_control->take(Selection::Clipboard, formats);
    if (m_wantsPrimary)
        m_control->take(Selection::Primary, formats);
    return m_connection.roundTrip() && report().isHeld;
}

ClipboardReport ClipboardOwner::report() const {
    const bool isHeld =
        m_control->isOurs(Selection::Clipboard) && (!m_wantsPrimary || m_control->isOurs(Selection::Primary));
    return {isHeld && !m_control->isFinished(), m_requests};
}

bool ClipboardOwner::isNeeded() const {
    const bool isOurs = m_control->isOurs(Selection::Clipboard) || m_control->isOurs(Selection::Primary);
    return (isOurs && !m_control->isFinished()) || !m_transfers.empty();
}

void ClipboardOwner::onRequest(const std::string&, FileDescriptor pipe) {
    if (!m_text)
        return;
    ++m_requests;
    ::fcntl(pipe.get(), F_SETFL, ::fcntl(pipe.get(), F_GETFL) | O_NONBLOCK);
    Transfer transfer{std::move(pipe), m_text, 0, Clock::now() + transferPatience};
    if (!isDone(transfer))
        m_transfers.push_back(std::move(transfer));
}

void ClipboardOwner::onLost(Selection) {
    if (!m_control->isOurs(Selection::Clipboard) && !m_control->isOurs(Selection::Primary))
        m_text.reset();
}

/// Gives as much as the reader takes. True when there is no more to be given, or nobody to take it.
bool ClipboardOwner::isDone(Transfer& transfer) {
    while (transfer.sent < transfer.text->size()) {
        const auto written = ::write(transfer.pipe.get(), transfer.text->data() + transfer.sent,
                                     transfer.text->size() - transfer.sent);
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return errno != EAGAIN;
        transfer.sent += static_cast<std::size_t>(written);
        transfer.deadline = Clock::now() + transferPatience;
    }
    return true;
}

std::vector<pollfd> ClipboardOwner::readers() const {
    std::vector<pollfd> readers;
    for (const auto& transfer : m_transfers)
        readers.push_back({transfer.pipe.get(), POLLOUT, 0});
    return readers;
}

std::optional<ClipboardOwner::Clock::time_point> ClipboardOwner::nextDeadline() const {
    const auto next = std::ranges::min_element(m_transfers, {}, &Transfer::deadline);
    return next == m_transfers.end() ? std::nullopt : std::optional(next->deadline);
}

void ClipboardOwner::serveReaders() {
    const auto now = Clock::now();
    std::erase_if(m_transfers,
                  [now](Transfer& transfer) { return isDone(transfer) || transfer.deadline <= now; });
}

} // namespace talvera
