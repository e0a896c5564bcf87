// SPDX-License-Identifier: MIT
#include "linux/x11/windows/X11DisplayClaim.h"

#include "linux/x11/server/eventType.h"

#include <chrono>
#include <utility>

namespace talvera {

namespace {

constexpr auto selectionName = "_TALVERA_AGENT";
constexpr auto startedAgainName = "_TALVERA_STARTED_AGAIN"; ///< the one target: it has an effect and no
                                                            ///< value, and the purpose lies in its property
constexpr std::uint32_t longestPurpose = 1000;              // bytes

} // namespace

X11DisplayClaim::X11DisplayClaim(const X11Server& server)
    : m_x11(server.connect()) {
    if (m_x11->isBroken())
        return;
    m_window = xcb_generate_id(m_x11->get());
    xcb_create_window(m_x11->get(), 0, m_window, m_x11->root(), 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, 0, nullptr);
    claim();
}

X11DisplayClaim::~X11DisplayClaim() = default;

/// Asking and taking are two requests; the grab lets no other start come in between.
void X11DisplayClaim::claim() {
    const auto selection = m_x11->atom(selectionName);
    xcb_grab_server(m_x11->get());
    if (m_x11->selectionOwner(selection) == XCB_WINDOW_NONE) {
        xcb_set_selection_owner(m_x11->get(), m_window, selection, XCB_CURRENT_TIME);
        m_isOurs = m_x11->selectionOwner(selection) == m_window;
    }
    xcb_ungrab_server(m_x11->get());
    m_x11->flush();
}

bool X11DisplayClaim::tellHolder(const QString& purpose) {
    const auto target = m_x11->atom(startedAgainName);
    const auto text = purpose.toUtf8().left(longestPurpose);
    xcb_change_property(m_x11->get(), XCB_PROP_MODE_REPLACE, m_window, target, m_x11->atom("UTF8_STRING"), 8,
                        static_cast<std::uint32_t>(text.size()), text.constData());
    xcb_convert_selection(m_x11->get(), m_window, m_x11->atom(selectionName), target, target,
                          XCB_CURRENT_TIME);
    const auto isAnswer = [](const xcb_generic_event_t& event) {
        return eventType(event) == XCB_SELECTION_NOTIFY;
    };
    const auto answer =
        m_x11->waitForEvent(isAnswer, std::chrono::steady_clock::now() + X11Connection::answerTimeout);
    return answer && reinterpret_cast<const xcb_selection_notify_event_t&>(*answer).property != XCB_ATOM_NONE;
}

void X11DisplayClaim::onSecondStart(std::function<void(const QString& purpose)> heard) {
    m_heard = std::move(heard);
    m_events.emplace(*m_x11, [this](const xcb_generic_event_t& event) {
        if (eventType(event) == XCB_SELECTION_REQUEST)
            answer(reinterpret_cast<const xcb_selection_request_event_t&>(event));
    });
}

void X11DisplayClaim::answer(const xcb_selection_request_event_t& request) {
    const bool isStart = request.target == m_x11->atom(startedAgainName);
    const auto purpose =
        isStart ? m_x11->read(m_x11->askProperty(request.requestor, startedAgainName, longestPurpose / 4))
                : X11Property(nullptr);
    xcb_selection_notify_event_t notify{};
    notify.response_type = XCB_SELECTION_NOTIFY;
    notify.time = request.time;
    notify.requestor = request.requestor;
    notify.selection = request.selection;
    notify.target = request.target;
    notify.property = isStart ? request.property : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
    xcb_send_event(m_x11->get(), 0, request.requestor, XCB_EVENT_MASK_NO_EVENT,
                   reinterpret_cast<const char*>(&notify));
    m_x11->flush();
    if (isStart)
        m_heard(QString::fromUtf8(purpose.bytes().data(), static_cast<qsizetype>(purpose.bytes().size())));
}

} // namespace talvera
