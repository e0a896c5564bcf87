// SPDX-License-Identifier: MIT
#include "linux/x11/server/X11Connection.h"

#include <poll.h>
#include <xcb/xcbext.h>

#include <algorithm>

namespace talvera {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::uint32_t propertyLimit = 4096;

} // namespace

X11Connection::~X11Connection() {
    // Closing a socket with events unread would make the server drop requests that it has not read yet.
    onEventsKept = nullptr;
    roundTrip();
    xcb_disconnect(m_connection);
}

bool X11Connection::waitReadable(Clock::time_point deadline) const {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
    if (left.count() <= 0)
        return false;
    pollfd readable{descriptor(), POLLIN, 0};
    // An interrupted wait counts as readable: the caller looks again and waits for what is left.
    return ::poll(&readable, 1, static_cast<int>(left.count())) != 0;
}

void* X11Connection::awaitReply(unsigned int sequence) {
    const auto deadline = Clock::now() + answerTimeout;
    flush();
    void* answer = nullptr;
    xcb_generic_error_t* error = nullptr;
    while (xcb_poll_for_reply(m_connection, sequence, &answer, &error) == 0) {
        if (isBroken() || !waitReadable(deadline)) {
            xcb_discard_reply(m_connection, sequence);
            answer = nullptr;
            break;
        }
    }
    std::free(error);
    keepEvents();
    return answer;
}

/// Takes what the library has read along with what was waited for.
void X11Connection::keepEvents() {
    while (auto* event = xcb_poll_for_queued_event(m_connection))
        m_kept.emplace_back(event);
    if (!m_kept.empty() && onEventsKept)
        onEventsKept();
}

bool X11Connection::roundTrip() {
    return reply<xcb_get_input_focus_reply_t>(xcb_get_input_focus(m_connection)) != nullptr;
}

XcbEvent X11Connection::pollEvent() {
    if (m_kept.empty())
        return XcbEvent(xcb_poll_for_event(m_connection));
    auto event = std::move(m_kept.front());
    m_kept.pop_front();
    return event;
}

XcbEvent X11Connection::waitForEvent(Clock::time_point deadline) {
    return waitForEvent([](const xcb_generic_event_t&) { return true; }, deadline);
}

XcbEvent X11Connection::waitForEvent(const std::function<bool(const xcb_generic_event_t&)>& wanted,
                                     Clock::time_point deadline) {
    flush();
    const auto isWanted = [&](const XcbEvent& event) { return wanted(*event); };
    std::size_t seen = 0;
    XcbEvent found;
    do {
        while (auto* event = xcb_poll_for_event(m_connection))
            m_kept.emplace_back(event);
        const auto position =
            std::find_if(m_kept.begin() + static_cast<std::ptrdiff_t>(seen), m_kept.end(), isWanted);
        seen = m_kept.size();
        if (position != m_kept.end()) {
            found = std::move(*position);
            m_kept.erase(position);
        }
    } while (!found && !isBroken() && waitReadable(deadline));
    keepEvents();
    return found;
}

xcb_atom_t X11Connection::atom(std::string_view name) {
    if (const auto known = m_atoms.find(name); known != m_atoms.end())
        return known->second;
    const auto answer = reply<xcb_intern_atom_reply_t>(
        xcb_intern_atom(m_connection, 0, static_cast<std::uint16_t>(name.size()), name.data()));
    if (!answer)
        return XCB_ATOM_NONE;
    return m_atoms.emplace(name, answer->atom).first->second;
}

const xcb_query_extension_reply_t* X11Connection::extension(xcb_extension_t& extension) {
    const auto* answer = xcb_get_extension_data(m_connection, &extension);
    return answer && answer->present ? answer : nullptr;
}

xcb_window_t X11Connection::selectionOwner(xcb_atom_t selection) {
    const auto answer =
        reply<xcb_get_selection_owner_reply_t>(xcb_get_selection_owner(m_connection, selection));
    return answer ? answer->owner : xcb_window_t{XCB_WINDOW_NONE};
}

X11PropertyQuestion X11Connection::askProperty(xcb_window_t window, std::string_view name,
                                               std::uint32_t most) {
    return {xcb_get_property(m_connection, 0, window, atom(name), XCB_GET_PROPERTY_TYPE_ANY, 0, most)};
}

X11Property X11Connection::read(X11PropertyQuestion question) {
    return X11Property(reply<xcb_get_property_reply_t>(question.cookie));
}

std::vector<std::uint32_t> X11Connection::property(xcb_window_t window, xcb_atom_t name) {
    return X11Property(reply<xcb_get_property_reply_t>(xcb_get_property(
                           m_connection, 0, window, name, XCB_GET_PROPERTY_TYPE_ANY, 0, propertyLimit)))
        .items();
}

} // namespace talvera
