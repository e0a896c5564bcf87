// SPDX-License-Identifier: MIT
#pragma once

#include "linux/clipboard/ClipboardLink.h"
#include "linux/x11/server/X11Connection.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace talvera {

/// Owns the clipboard and the primary selection with one and the same text, and gives it to each requestor,
/// in pieces if it is large. Uses its connection alone; the owner of this object hands it the events.
///
/// A selection that the focused application has made for itself stays its own: many drop the marking when
/// they lose it, and what is pasted would not take the place of what was marked. But a terminal loses it,
/// since it pastes from there.
class SelectionOwner {
public:
    using Clock = std::chrono::steady_clock;

    explicit SelectionOwner(X11Connection& connection);
    SelectionOwner(const SelectionOwner&) = delete;
    SelectionOwner& operator=(const SelectionOwner&) = delete;

    /// Takes the selections for `text`. True when the server says that they are ours. May handle events
    /// meanwhile.
    bool own(WipedText text);

    ClipboardReport report();

    /// One of the selections is still ours, or a requestor is still being sent what was.
    bool isNeeded() const;

    void handle(const xcb_generic_event_t& event);

    /// When the next of the transfers going on is to be given up, and giving up those that are due.
    std::optional<Clock::time_point> nextDeadline() const;
    void dropStalled(Clock::time_point now);

    /// Asks the session's clipboard manager to take the text over. False when there is none or the clipboard
    /// isn't ours. The answer comes by events: see isBusy().
    bool beginHandOver();
    bool handOverSucceeded() const { return m_handOver == HandOver::Done; }

    /// A hand-over or a transfer is going on.
    bool isBusy() const { return m_handOver == HandOver::Pending || !m_transfers.empty(); }

private:
    enum class HandOver { None, Pending, Done, Refused };

    struct Holding {
        xcb_atom_t selection = XCB_ATOM_NONE;
        bool isWanted = true;
        bool isOurs = false;
    };

    /// A text on its way in pieces: each is written when the last one has been taken.
    struct Transfer {
        xcb_window_t requestor = XCB_NONE;
        xcb_atom_t property = XCB_ATOM_NONE;
        xcb_atom_t type = XCB_ATOM_NONE;
        WipedText bytes;
        std::size_t sent = 0;
        Clock::time_point deadline;
    };

    bool take(Holding& holding);
    bool isMarkedInFocusedWindow();
    void onRequest(const xcb_selection_request_event_t& request);
    void onClear(const xcb_selection_clear_event_t& clear);
    void onProperty(const xcb_property_notify_event_t& change);
    void onError(const xcb_generic_error_t& error);

    /// Writes the selection as `target` to the requestor's property; false when there is no such form of it.
    bool convert(xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property);
    bool convertSeveral(xcb_window_t requestor, xcb_atom_t property);
    std::vector<xcb_atom_t> targets();
    WipedText latin1();
    void give(xcb_window_t requestor, xcb_atom_t property, xcb_atom_t type, const WipedText& bytes);
    void giveNext(Transfer& transfer);
    void giveAtoms(xcb_window_t requestor, xcb_atom_t property, xcb_atom_t type,
                   const std::vector<std::uint32_t>& items);
    void dropTransfersTo(xcb_window_t requestor);
    void listenTo(xcb_window_t requestor, bool listen);

    X11Connection& m_connection;
    xcb_window_t m_window;
    std::array<Holding, 2> m_holdings;
    xcb_timestamp_t m_since = XCB_CURRENT_TIME;
    WipedText m_text;
    std::uint32_t m_requests = 0;
    std::vector<Transfer> m_transfers;
    HandOver m_handOver = HandOver::None;
};

} // namespace talvera
