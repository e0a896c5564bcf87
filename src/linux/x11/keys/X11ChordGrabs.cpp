// SPDX-License-Identifier: MIT
#include "linux/x11/keys/X11ChordGrabs.h"

#include "linux/x11/keys/X11KeyCodes.h"
#include "linux/x11/server/eventType.h"
#include "linux/x11/server/serverNotes.h"

#include <algorithm>
#include <iterator>

namespace talvera {

namespace {

constexpr std::uint16_t allModifiers = 0xFF;
/// Caps Lock, Num Lock, and what layouts use for Scroll Lock and for a switched group: on without a key held.
constexpr std::uint16_t locks = XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2 | XCB_MOD_MASK_3 | XCB_MOD_MASK_5;

} // namespace

X11ChordGrabs::X11ChordGrabs(const X11Server& server)
    : m_connection(server.connect()) {}

X11ChordGrabs::~X11ChordGrabs() {
    hold({});
}

std::vector<WatchResult> X11ChordGrabs::hold(const std::vector<KeyChord>& chords) {
    Combinations wanted;
    for (const auto& chord : chords)
        wanted.merge(withFurtherModifiers(chord, allModifiers));

    noteReservedKeys(wanted);
    Combinations unwanted;
    std::ranges::set_difference(m_held, wanted, std::inserter(unwanted, unwanted.end()));
    for (const auto& combination : unwanted)
        letGo(combination);
    Combinations missing;
    std::ranges::set_difference(wanted, m_held, std::inserter(missing, missing.end()));
    grab(missing);
    if (missing.empty() && !unwanted.empty())
        m_connection->roundTrip();

    std::vector<WatchResult> results;
    for (const auto& chord : chords) {
        const auto needed = withFurtherModifiers(chord, locks);
        if (needed.empty())
            results.push_back(WatchResult::Unavailable);
        else
            results.push_back(std::ranges::includes(m_held, needed) ? WatchResult::Watching
                                                                    : WatchResult::ChordTaken);
    }
    return results;
}

/// What we type has no modifiers but Shift and those of the layout's levels.
void X11ChordGrabs::noteReservedKeys(const Combinations& wanted) {
    constexpr std::uint16_t typed = XCB_MOD_MASK_SHIFT | locks;
    std::set<XKeycode> keycodes;
    for (const auto& [keycode, modifiers] : wanted) {
        if ((modifiers & ~typed) == 0)
            keycodes.insert(keycode);
    }
    if (keycodes != m_notedKeys) // the first time also replaces what a former process may have left
        writeNote(keycodes);
    m_notedKeys = keycodes;
}

void X11ChordGrabs::writeNote(const std::set<XKeycode>& keycodes) {
    std::vector<std::uint32_t> items;
    for (const auto keycode : keycodes)
        items.push_back(static_cast<std::uint32_t>(keycode));
    const auto note = m_connection->atom(serverNotes::reservedKeys);
    if (items.empty())
        xcb_delete_property(m_connection->get(), m_connection->root(), note);
    else
        xcb_change_property(m_connection->get(), XCB_PROP_MODE_REPLACE, m_connection->root(), note,
                            XCB_ATOM_CARDINAL, 32, static_cast<std::uint32_t>(items.size()), items.data());
    m_connection->flush();
}

/// Empty for a chord that no keyboard can produce.
X11ChordGrabs::Combinations X11ChordGrabs::withFurtherModifiers(const KeyChord& chord,
                                                                std::uint16_t further) const {
    const auto modifiers = X11KeyCodes::modifiersFromFlags(chord.modifiers);
    if (!modifiers || isModifierKey(chord.keyCode))
        return {};
    const auto& setup = m_connection->setup();
    Combinations combinations;
    for (const auto keycode : X11KeyCodes::fromVirtual(chord.keyCode)) {
        if (keycode < XKeycode(setup.min_keycode) || keycode > XKeycode(setup.max_keycode))
            continue;
        for (std::uint16_t more = 0; more <= allModifiers; ++more) {
            if ((more & ~further) == 0)
                combinations.emplace(keycode, static_cast<std::uint16_t>(*modifiers | more));
        }
    }
    return combinations;
}

void X11ChordGrabs::grab(const Combinations& combinations) {
    if (combinations.empty())
        return;
    std::vector<std::pair<Combination, xcb_void_cookie_t>> requests;
    for (const auto& [keycode, modifiers] : combinations)
        requests.emplace_back(Combination{keycode, modifiers},
                              xcb_grab_key_checked(m_connection->get(), 0, m_connection->root(), modifiers,
                                                   static_cast<xcb_keycode_t>(keycode), XCB_GRAB_MODE_ASYNC,
                                                   XCB_GRAB_MODE_ASYNC));
    const bool answered = m_connection->roundTrip();
    for (const auto& [combination, cookie] : requests) {
        if (!answered) {
            xcb_discard_reply(m_connection->get(), cookie.sequence);
            continue;
        }
        const XcbPtr<xcb_generic_error_t> refusal(xcb_request_check(m_connection->get(), cookie));
        if (!refusal)
            m_held.insert(combination);
    }
}

void X11ChordGrabs::letGo(const Combination& combination) {
    xcb_ungrab_key(m_connection->get(), static_cast<xcb_keycode_t>(combination.first), m_connection->root(),
                   combination.second);
    m_held.erase(combination);
}

void X11ChordGrabs::letGoOfPress() {
    xcb_ungrab_keyboard(m_connection->get(), XCB_CURRENT_TIME);
    m_connection->roundTrip();
}

/// The passive grabs go first, or else the next repeat would bring the press back to us.
void X11ChordGrabs::letPass(XKeycode key) {
    m_passing = key;
    xcb_ungrab_key(m_connection->get(), static_cast<xcb_keycode_t>(key), m_connection->root(),
                   XCB_MOD_MASK_ANY);
    xcb_ungrab_keyboard(m_connection->get(), XCB_CURRENT_TIME);
    m_connection->roundTrip();
}

bool X11ChordGrabs::takeBack(XKeycode key) {
    if (m_passing != key)
        return false;
    m_passing.reset();
    std::erase_if(m_held, [key](const Combination& combination) { return combination.first == key; });
    return true;
}

std::optional<X11ChordGrabs::KeyDown> X11ChordGrabs::nextKeyDown() {
    while (const auto event = m_connection->pollEvent()) {
        if (eventType(*event) != XCB_KEY_PRESS)
            continue;
        const auto& press = reinterpret_cast<const xcb_key_press_event_t&>(*event);
        return KeyDown{XKeycode(press.detail), press.time, press.state};
    }
    return std::nullopt;
}

} // namespace talvera
