// SPDX-License-Identifier: MIT
#include "linux/x11/typing/X11Typist.h"

#include "linux/x11/server/ServerGrab.h"
#include "linux/x11/server/serverNotes.h"

#include <xkbcommon/xkbcommon-keysyms.h>

#include <algorithm>
#include <set>
#include <thread>
#include <utility>

namespace talvera {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

// For an application that hangs. Keys that it reads later than that may come out as others.
constexpr std::chrono::seconds fullPatience{10};
constexpr milliseconds lostPatience{100};
constexpr milliseconds restPatience{2000}; // for an application that never rests, such as a player

constexpr milliseconds keyboardPoll{5};
// For chords of the user's own, and for grabs of the keyboard. What is held longer than that is let go, since
// it may never end by itself; a grab may end with it.
constexpr milliseconds chordPatience{2000};
constexpr milliseconds grabPatience{2300};
constexpr milliseconds nobodyPatience{1000};
constexpr milliseconds elsewherePatience{200}; // for a window that comes up and goes at once
constexpr std::chrono::seconds longestPatience{10};

/// How long the keys may go astray until the target counts as lost.
milliseconds patienceWith(KeyDestination destination) {
    switch (destination) {
    case KeyDestination::Target:
        break;
    case KeyDestination::Nobody:
        return nobodyPatience;
    case KeyDestination::Grab:
        return grabPatience;
    case KeyDestination::Elsewhere:
        return elsewherePatience;
    }
    return std::chrono::hours(1);
}

bool isBeyondBasicPlane(XKeysym symbol) {
    // Unicode symbols are 0x01000000 and the code point.
    return symbol >= XKeysym{0x01010000} && symbol <= XKeysym{0x0110ffff};
}

/// The keys that our own hotkeys would take from us.
std::set<XKeycode> reservedKeys(X11Connection& connection) {
    std::set<XKeycode> keys;
    for (const std::uint32_t key :
         connection.property(connection.root(), connection.atom(serverNotes::reservedKeys)))
        keys.insert(XKeycode(key));
    return keys;
}

} // namespace

std::vector<XKeysym> symbolsToLend(const X11Typist::Symbols& symbols, std::size_t start, std::size_t capacity,
                                   const std::function<bool(XKeysym)>& isWritable) {
    std::vector<XKeysym> wanted;
    for (std::size_t position = start; position < symbols.size(); ++position) {
        const XKeysym symbol = symbols[position];
        if (symbol == noKeysym || isWritable(symbol) ||
            std::find(wanted.begin(), wanted.end(), symbol) != wanted.end())
            continue;
        if (wanted.size() == capacity)
            break;
        wanted.push_back(symbol);
    }
    return wanted;
}

X11Typist::X11Typist(X11Keyboard& keyboard, TargetBarrier& barrier, KeyboardFocus& focus)
    : m_keyboard(keyboard)
    , m_barrier(barrier)
    , m_focus(focus)
    , m_ledger(keyboard)
    , m_keymapWatch(keyboard)
    , m_layout(keyboard)
    , m_spares(keyboard, m_ledger)
    , m_guard(keyboard, m_ledger, m_layout.numLockModifiers())
    , m_patience(fullPatience)
    , m_restPatience(restPatience) {
    m_group = m_keyboard.state().group;
    m_layout.find(XKeysym{XKB_KEY_space}, m_group); // collects what the group writes
}

void X11Typist::begin(Symbols symbols, std::shared_ptr<const X11Target> target) {
    m_symbols = std::move(symbols);
    m_target = std::move(target);
    if (m_target)
        m_focus.watch(*m_target);
    m_barrier.begin();
    m_filterGuard.emplace(m_keyboard, m_ledger);
    m_guard.letGo(m_spares.neutralKey());
    m_group = m_guard.look().group;
    m_layout.avoid(reservedKeys(m_keyboard.connection()));
    followKeyboard();
    lendFrom(0);
}

X11Typist::~X11Typist() {
    release();
    if (!m_spares.lent().empty()) {
        if (m_hasTyped)
            awaitReading();
        m_spares.giveBack();
    }
    if (m_target)
        m_focus.unwatch();
}

PostResult X11Typist::press(std::size_t position, bool withShift) {
    release();
    const XKeysym symbol = m_symbols[position];
    letReadBefore(symbol);
    for (bool hasLent = false;;) {
        if (const auto refusal = awaitKeyboard())
            return *refusal;
        followKeyboard();
        const auto stroke = findStroke(symbol, withShift);
        if (!stroke && (symbol == noKeysym || std::exchange(hasLent, true)))
            return PostResult::NotMakeable;
        if (!stroke)
            lendFrom(position); // which takes its time
        else if (pressUndisturbed(*stroke))
            return PostResult::Posted;
    }
}

/// False when another window has got the focus, or the user has a chord down, since that was looked at: then
/// nothing is pressed. No program can move the focus between this last look and the key.
bool X11Typist::pressUndisturbed(const KeyStroke& stroke) {
    X11Connection& connection = m_keyboard.connection();
    const ServerGrab grab(connection);
    m_filterGuard->renew();
    const auto focusQuestion = xcb_get_input_focus(connection.get());
    const ModifierGuard::Look keyboard = m_guard.look();
    const auto focus = connection.reply<xcb_get_input_focus_reply_t>(focusQuestion);
    const bool isAtTarget = focus && (!m_target || focus->focus == m_focus.targetWindow());
    if (!isAtTarget || keyboard.isInUseByUser || keyboard.group != m_group)
        return false;
    // In one go with the key, since the user's hands don't wait: one that goes down only now counts as let
    // go.
    m_keyboard.releaseAll(m_layout.modifierKeys());
    for (const XKeycode modifier : stroke.modifiers)
        m_keyboard.press(modifier);
    m_keyboard.press(stroke.key);
    m_pressed = stroke;
    m_hasTyped = true;
    return true;
}

std::optional<PostResult> X11Typist::awaitKeyboard() {
    const auto start = Clock::now();
    auto destinationSince = start;
    auto lastDestination = KeyDestination::Target;
    bool hasLetGo = false;
    for (;; std::this_thread::sleep_for(keyboardPoll)) {
        const auto destination = m_target ? m_focus.destination(*m_target) : KeyDestination::Target;
        const ModifierGuard::Look keyboard = m_guard.look(); // last, since fingers are quicker than windows
        const auto now = Clock::now();
        if (m_keyboard.connection().isBroken())
            return PostResult::CutOff;
        m_group = keyboard.group;
        if (!keyboard.isInUseByUser && destination == KeyDestination::Target)
            return std::nullopt;
        if (std::exchange(lastDestination, destination) != destination)
            destinationSince = now;
        if (now - destinationSince >= patienceWith(destination) ||
            (destination != KeyDestination::Target && now - start >= longestPatience))
            return PostResult::TargetLost;
        if (now - start >= chordPatience && (keyboard.isInUseByUser || !hasLetGo)) {
            m_guard.letGo(m_spares.neutralKey());
            hasLetGo = true;
        }
    }
}

PostResult X11Typist::release() {
    const bool isBroken = m_keyboard.connection().isBroken();
    const auto result = isBroken ? PostResult::CutOff : PostResult::Posted;
    if (!m_pressed)
        return result;
    m_keyboard.release(m_pressed->key);
    for (auto modifier = m_pressed->modifiers.rbegin(); modifier != m_pressed->modifiers.rend(); ++modifier)
        m_keyboard.release(*modifier);
    m_keyboard.connection().flush();
    m_pressed.reset();
    return result;
}

void X11Typist::followKeyboard() {
    if (m_keymapWatch.hasChanged()) {
        m_spares.refresh();
        m_layout.refresh(m_spares.lent());
    }
}

std::optional<KeyStroke> X11Typist::findStroke(XKeysym symbol, bool withShift) {
    auto stroke = m_layout.find(symbol, m_group);
    if (!stroke) {
        const auto spare = m_spares.find(symbol);
        stroke = spare ? std::optional(KeyStroke{*spare, {}}) : std::nullopt;
    }
    if (!stroke || !withShift)
        return stroke;
    const auto shift = m_layout.find(XKeysym{XKB_KEY_Shift_L}, m_group);
    return shift ? std::optional(KeyStroke{stroke->key, {shift->key}}) : std::nullopt;
}

void X11Typist::lendFrom(std::size_t position) {
    const auto wanted = symbolsToLend(m_symbols, position, m_spares.capacity(), [this](XKeysym symbol) {
        return m_layout.find(symbol, m_group).has_value();
    });
    const bool known = std::all_of(wanted.begin(), wanted.end(),
                                   [this](XKeysym symbol) { return m_spares.find(symbol).has_value(); });
    if (known)
        return;
    if (m_hasTyped) {
        awaitReading();
        m_hasTyped = false;
    }
    m_spares.lend(wanted);
    awaitReading();
    m_keymapWatch.hasChanged(); // the change that we have just made is no news
}

/// LibreOffice collects characters of 16 bits as long as more keys are waiting, and lets larger ones overtake
/// them: of a family of emojis the joiners would come last. While it lays out a text it also looks ahead into
/// its queue, and answers there that it has read keys which it has not worked off.
void X11Typist::letReadBefore(XKeysym symbol) {
    if (!isBeyondBasicPlane(symbol)) {
        m_hasTypedBasic = true;
        return;
    }
    if (!std::exchange(m_hasTypedBasic, false))
        return;
    awaitReading();
    if (m_restPatience > milliseconds(0) && !m_barrier.waitForRest(m_restPatience))
        m_restPatience = milliseconds(0); // once is enough
}

void X11Typist::awaitReading() {
    m_keyboard.connection().roundTrip();
    if (!m_barrier.wait(m_patience))
        m_patience = lostPatience; // once is enough
}

} // namespace talvera
