// SPDX-License-Identifier: MIT
#include "linux/x11/clipboard/SelectionOwner.h"

#include "linux/clipboard/terminalProcess.h"
#include "linux/x11/server/FocusedWindow.h"
#include "linux/x11/server/eventType.h"
#include "linux/x11/server/serverTime.h"

#include <algorithm>
#include <memory>
#include <string>

namespace talvera {

namespace {

constexpr std::size_t pieceSize = 128 * 1024; // any server takes requests of this size
constexpr std::chrono::seconds transferPatience{15};

/// The text in Latin-1, the form that the oldest programs ask for; null when it can't be said in it.
WipedText toLatin1(const std::string& utf8) {
    const auto latin1 = makeWipedText(utf8.size());
    std::size_t length = 0;
    for (std::size_t index = 0; index < utf8.size(); ++index) {
        const auto byte = static_cast<unsigned char>(utf8[index]);
        if (byte < 0x80) {
            (*latin1)[length++] = utf8[index];
        } else if ((byte == 0xC2 || byte == 0xC3) && index + 1 < utf8.size()) {
            const auto low = static_cast<unsigned char>(utf8[++index]) & 0x3FU;
            (*latin1)[length++] = static_cast<char>((byte & 0x03U) << 6 | low);
        } else {
            return nullptr;
        }
    }
    latin1->resize(length);
    return latin1;
}

} // namespace

SelectionOwner::SelectionOwner(X11Connection& connection)
    : m_connection(connection)
    , m_window(xcb_generate_id(connection.get())) {
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(m_connection.get(), XCB_COPY_FROM_PARENT, m_window, m_connection.root(), 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
    m_holdings[0].selection = m_connection.atom("CLIPBOARD");
    m_holdings[1].selection = XCB_ATOM_PRIMARY;
}

bool SelectionOwner::own(WipedText text) {
    const auto time = serverTime(m_connection);
    if (!time)
        return false;
    m_text = std::move(text);
    m_since = *time;
    m_requests = 0;
    m_handOver = HandOver::None;
    auto& [clipboard, primary] = m_holdings;
    primary.isWanted = !isMarkedInFocusedWindow();
    const bool tookClipboard = take(clipboard);
    return (!primary.isWanted || take(primary)) && tookClipboard;
}

bool SelectionOwner::take(Holding& holding) {
    xcb_set_selection_owner(m_connection.get(), m_window, holding.selection, m_since);
    holding.isOurs = m_connection.selectionOwner(holding.selection) == m_window;
    return holding.isOurs;
}

bool SelectionOwner::isMarkedInFocusedWindow() {
    const xcb_window_t owner = m_connection.selectionOwner(XCB_ATOM_PRIMARY);
    const xcb_window_t focused = focusedWindow(m_connection);
    const bool isFocusedClient = owner != XCB_NONE && focused != XCB_NONE &&
                                 clientOf(m_connection, owner) == clientOf(m_connection, focused);
    return isFocusedClient &&
           !mayShowTerminals(processOfWindow(m_connection, focused), processesOfClients(m_connection));
}

ClipboardReport SelectionOwner::report() {
    bool isHeld = m_text != nullptr;
    for (const Holding& holding : m_holdings)
        isHeld = isHeld && (!holding.isWanted || m_connection.selectionOwner(holding.selection) == m_window);
    return {isHeld, m_requests};
}

bool SelectionOwner::isNeeded() const {
    return !m_transfers.empty() || std::any_of(m_holdings.begin(), m_holdings.end(),
                                               [](const Holding& holding) { return holding.isOurs; });
}

void SelectionOwner::handle(const xcb_generic_event_t& event) {
    switch (eventType(event)) {
    case 0:
        onError(reinterpret_cast<const xcb_generic_error_t&>(event));
        break;
    case XCB_SELECTION_REQUEST:
        onRequest(reinterpret_cast<const xcb_selection_request_event_t&>(event));
        break;
    case XCB_SELECTION_CLEAR:
        onClear(reinterpret_cast<const xcb_selection_clear_event_t&>(event));
        break;
    case XCB_PROPERTY_NOTIFY:
        onProperty(reinterpret_cast<const xcb_property_notify_event_t&>(event));
        break;
    case XCB_DESTROY_NOTIFY:
        dropTransfersTo(reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window);
        break;
    case XCB_SELECTION_NOTIFY: {
        const auto& notice = reinterpret_cast<const xcb_selection_notify_event_t&>(event);
        if (m_handOver == HandOver::Pending && notice.selection == m_connection.atom("CLIPBOARD_MANAGER"))
            m_handOver = notice.property != XCB_ATOM_NONE ? HandOver::Done : HandOver::Refused;
        break;
    }
    default:
        break;
    }
    m_connection.flush();
}

void SelectionOwner::onError(const xcb_generic_error_t& error) {
    // Who asked is gone before it was answered.
    if (error.error_code == XCB_WINDOW)
        dropTransfersTo(error.resource_id);
}

void SelectionOwner::onClear(const xcb_selection_clear_event_t& clear) {
    for (Holding& holding : m_holdings) {
        // A notice from before our last taking may still be on its way.
        const bool isOld = m_since - clear.time < UINT32_MAX / 2 && clear.time != m_since;
        if (holding.selection == clear.selection && !isOld)
            holding.isOurs = false;
    }
    const bool lost = std::none_of(m_holdings.begin(), m_holdings.end(),
                                   [](const Holding& holding) { return holding.isOurs; });
    if (lost)
        m_text.reset();
}

void SelectionOwner::onRequest(const xcb_selection_request_event_t& request) {
    const auto holding = std::find_if(m_holdings.begin(), m_holdings.end(), [&](const Holding& candidate) {
        return candidate.selection == request.selection;
    });
    const bool isOurs = holding != m_holdings.end() && holding->isOurs && m_text;
    const bool isLate = request.time != XCB_CURRENT_TIME && m_since - request.time < UINT32_MAX / 2 &&
                        request.time != m_since;
    // Clients of the old kind name no property and mean the target.
    const xcb_atom_t property = request.property != XCB_ATOM_NONE ? request.property : request.target;

    xcb_selection_notify_event_t answer{};
    answer.response_type = XCB_SELECTION_NOTIFY;
    answer.time = request.time;
    answer.requestor = request.requestor;
    answer.selection = request.selection;
    answer.target = request.target;
    const bool given = isOurs && !isLate && convert(request.requestor, request.target, property);
    answer.property = given ? property : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
    const bool isAboutText =
        request.target != m_connection.atom("TARGETS") && request.target != m_connection.atom("TIMESTAMP");
    m_requests += given && isAboutText ? 1 : 0;
    xcb_send_event(m_connection.get(), 0, request.requestor, XCB_EVENT_MASK_NO_EVENT,
                   reinterpret_cast<const char*>(&answer));
}

bool SelectionOwner::convert(xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property) {
    if (target == m_connection.atom("TARGETS")) {
        giveAtoms(requestor, property, XCB_ATOM_ATOM, targets());
        return true;
    }
    if (target == m_connection.atom("TIMESTAMP")) {
        giveAtoms(requestor, property, XCB_ATOM_INTEGER, {m_since});
        return true;
    }
    if (target == m_connection.atom("MULTIPLE"))
        return convertSeveral(requestor, property);
    const bool isUnicode = target == m_connection.atom("UTF8_STRING") ||
                           target == m_connection.atom("text/plain;charset=utf-8") ||
                           target == m_connection.atom("text/plain");
    if (isUnicode) {
        give(requestor, property, target, m_text);
        return true;
    }
    const bool isAnyText = target == m_connection.atom("TEXT"); // the form is ours to choose
    if (isAnyText || target == XCB_ATOM_STRING) {
        if (const WipedText bytes = latin1()) {
            give(requestor, property, XCB_ATOM_STRING, bytes);
            return true;
        }
    }
    if (isAnyText)
        give(requestor, property, m_connection.atom("UTF8_STRING"), m_text);
    return isAnyText;
}

std::vector<xcb_atom_t> SelectionOwner::targets() {
    std::vector<xcb_atom_t> all;
    for (const char* name : {"TARGETS", "TIMESTAMP", "MULTIPLE", "UTF8_STRING", "text/plain;charset=utf-8",
                             "text/plain", "TEXT"})
        all.push_back(m_connection.atom(name));
    if (latin1())
        all.push_back(XCB_ATOM_STRING);
    return all;
}

WipedText SelectionOwner::latin1() {
    return toLatin1(*m_text);
}

bool SelectionOwner::convertSeveral(xcb_window_t requestor, xcb_atom_t property) {
    std::vector<std::uint32_t> pairs = m_connection.property(requestor, property);
    if (pairs.empty() || pairs.size() % 2 != 0)
        return false;
    const xcb_atom_t several = m_connection.atom("MULTIPLE");
    for (std::size_t index = 0; index < pairs.size(); index += 2) {
        xcb_atom_t& target = pairs[index];
        if (target == several || pairs[index + 1] == XCB_ATOM_NONE ||
            !convert(requestor, target, pairs[index + 1]))
            pairs[index + 1] = XCB_ATOM_NONE;
    }
    giveAtoms(requestor, property, m_connection.atom("ATOM_PAIR"), pairs);
    return true;
}

void SelectionOwner::giveAtoms(xcb_window_t requestor, xcb_atom_t property, xcb_atom_t type,
                               const std::vector<std::uint32_t>& items) {
    xcb_change_property(m_connection.get(), XCB_PROP_MODE_REPLACE, requestor, property, type, 32,
                        static_cast<std::uint32_t>(items.size()), items.data());
}

void SelectionOwner::give(xcb_window_t requestor, xcb_atom_t property, xcb_atom_t type,
                          const WipedText& bytes) {
    if (bytes->size() <= pieceSize) {
        xcb_change_property(m_connection.get(), XCB_PROP_MODE_REPLACE, requestor, property, type, 8,
                            static_cast<std::uint32_t>(bytes->size()), bytes->data());
        return;
    }
    listenTo(requestor, true);
    m_transfers.push_back({requestor, property, type, bytes, 0, Clock::now() + transferPatience});
    giveAtoms(requestor, property, m_connection.atom("INCR"), {static_cast<std::uint32_t>(bytes->size())});
}

void SelectionOwner::onProperty(const xcb_property_notify_event_t& change) {
    if (change.state != XCB_PROPERTY_DELETE)
        return;
    const auto transfer =
        std::find_if(m_transfers.begin(), m_transfers.end(), [&](const Transfer& candidate) {
            return candidate.requestor == change.window && candidate.property == change.atom;
        });
    if (transfer == m_transfers.end())
        return;
    const bool wasLast = transfer->sent == transfer->bytes->size();
    giveNext(*transfer); // behind the last piece, an empty one that says so
    if (wasLast) {
        m_transfers.erase(transfer);
        listenTo(change.window, false);
    }
}

void SelectionOwner::giveNext(Transfer& transfer) {
    const std::size_t size = std::min(pieceSize, transfer.bytes->size() - transfer.sent);
    xcb_change_property(m_connection.get(), XCB_PROP_MODE_REPLACE, transfer.requestor, transfer.property,
                        transfer.type, 8, static_cast<std::uint32_t>(size),
                        transfer.bytes->data() + transfer.sent);
    transfer.sent += size;
    transfer.deadline = Clock::now() + transferPatience;
}

std::optional<SelectionOwner::Clock::time_point> SelectionOwner::nextDeadline() const {
    const auto next = std::min_element(
        m_transfers.begin(), m_transfers.end(),
        [](const Transfer& one, const Transfer& other) { return one.deadline < other.deadline; });
    return next != m_transfers.end() ? std::optional(next->deadline) : std::nullopt;
}

void SelectionOwner::dropStalled(Clock::time_point now) {
    std::erase_if(m_transfers, [now](const Transfer& transfer) { return transfer.deadline <= now; });
}

void SelectionOwner::dropTransfersTo(xcb_window_t requestor) {
    std::erase_if(m_transfers,
                  [requestor](const Transfer& transfer) { return transfer.requestor == requestor; });
}

void SelectionOwner::listenTo(xcb_window_t requestor, bool listen) {
    const bool stillNeeded =
        std::any_of(m_transfers.begin(), m_transfers.end(),
                    [&](const Transfer& transfer) { return transfer.requestor == requestor; });
    if (requestor == m_window || (!listen && stillNeeded))
        return;
    const std::uint32_t events =
        listen ? XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY : XCB_EVENT_MASK_NO_EVENT;
    xcb_change_window_attributes(m_connection.get(), requestor, XCB_CW_EVENT_MASK, &events);
}

bool SelectionOwner::beginHandOver() {
    const xcb_atom_t manager = m_connection.atom("CLIPBOARD_MANAGER");
    if (!m_holdings[0].isOurs || m_connection.selectionOwner(manager) == XCB_WINDOW_NONE)
        return false;
    const xcb_atom_t property = m_connection.atom("_TALVERA_SAVE");
    giveAtoms(m_window, property, XCB_ATOM_ATOM,
              {m_connection.atom("UTF8_STRING"), m_connection.atom("text/plain;charset=utf-8")});
    xcb_convert_selection(m_connection.get(), m_window, manager, m_connection.atom("SAVE_TARGETS"), property,
                          m_since);
    m_connection.flush();
    m_handOver = HandOver::Pending;
    return true;
}

} // namespace talvera
