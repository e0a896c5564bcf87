// SPDX-License-Identifier: MIT
#include "linux/x11/keys/X11KeyWatch.h"

#include "linux/x11/keys/X11KeyCodes.h"
#include "linux/x11/keys/X11KeyPresence.h"
#include "linux/x11/server/eventType.h"

#include <algorithm>
#include <utility>

#include <xcb/xinput.h>

namespace talvera {

namespace {

/// Raw events reach us during the grabs of others since version 2.1 of the input extension.
constexpr std::uint16_t neededMajor = 2;
constexpr std::uint16_t neededMinor = 1;

VirtualKey keyOf(const KeyInterest& interest) {
    const auto* chord = chordOf(interest);
    return chord ? chord->keyCode : std::get<VirtualKey>(interest);
}

} // namespace

const KeyChord* chordOf(const KeyInterest& interest) {
    const auto* stroke = std::get_if<KeyStroke>(&interest);
    return stroke ? &stroke->chord : std::get_if<KeyChord>(&interest);
}

std::unique_ptr<X11KeyWatch> X11KeyWatch::open(const X11Server& server, Report report,
                                               const std::string& sysfs) {
    auto watch = std::unique_ptr<X11KeyWatch>(new X11KeyWatch(server, std::move(report), sysfs));
    if (!watch->selectEvents() || watch->m_devices.isBehindWayland())
        return nullptr;
    return watch;
}

X11KeyWatch::X11KeyWatch(const X11Server& server, Report report, std::string sysfs)
    : m_events(server.connect())
    , m_grabs(server)
    , m_report(std::move(report))
    , m_sysfs(std::move(sysfs))
    , m_capsLock(*m_events) {}

bool X11KeyWatch::selectEvents() {
    auto* connection = m_events->get();
    const auto* input = m_events->extension(xcb_input_id);
    if (!input)
        return false;
    m_inputExtension = input->major_opcode;
    const auto version = m_events->reply<xcb_input_xi_query_version_reply_t>(
        xcb_input_xi_query_version(connection, neededMajor, neededMinor));
    if (!version ||
        std::pair(version->major_version, version->minor_version) < std::pair(neededMajor, neededMinor))
        return false;

    struct {
        xcb_input_event_mask_t keyboards{XCB_INPUT_DEVICE_ALL_MASTER, 1};
        std::uint32_t keyboardEvents =
            XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE;
        xcb_input_event_mask_t devices{XCB_INPUT_DEVICE_ALL, 1};
        std::uint32_t deviceEvents = XCB_INPUT_XI_EVENT_MASK_HIERARCHY;
    } const masks;
    xcb_input_xi_select_events(connection, m_events->root(), 2, &masks.keyboards);
    m_devices.load(*m_events);
    m_heldKeys.loadModifiers(*m_events);
    return !m_events->isBroken() && !m_grabs.connection().isBroken();
}

std::vector<WatchResult> X11KeyWatch::waitFor(const std::vector<KeyInterest>& interests) {
    const bool letsGo = forgetPressesOtherThanOf(interests);
    m_interests = interests;
    chooseRelevantKeys();
    if (m_aloneKeys.contains(VirtualKey::CapsLock))
        m_capsLock.isOn(); // from here on its presses count
    const auto results =
        m_isSuspended ? std::vector(interests.size(), WatchResult::Watching) : applyInterests();
    if (letsGo)
        m_grabs.letGoOfPress(); // last, or else a repeat could bring the press back to us
    if (!m_isSuspended && std::exchange(m_hasMissedEnds, false))
        reportMissedEnds();
    return results;
}

/// True when there is a chord's press among them.
bool X11KeyWatch::forgetPressesOtherThanOf(const std::vector<KeyInterest>& interests) {
    bool hasChord = false;
    std::erase_if(m_reportedPresses, [&](VirtualKey key) {
        const bool isKept = std::ranges::any_of(interests, [&](const KeyInterest& interest) {
            return keyOf(interest) == key && std::ranges::count(m_interests, interest) > 0;
        });
        hasChord = hasChord || (!isKept && m_chordKeys.contains(key));
        return !isKept;
    });
    return hasChord;
}

void X11KeyWatch::chooseRelevantKeys() {
    m_chordKeys.clear();
    m_aloneKeys.clear();
    for (const auto& interest : m_interests) {
        auto& keys = chordOf(interest) ? m_chordKeys : m_aloneKeys;
        keys.insert(keyOf(interest));
    }
    for (std::size_t index = 0; index < m_relevantKeys.size(); ++index) {
        const auto keycode = XKeycode(index);
        const auto key = X11KeyCodes::toVirtual(keycode);
        const bool isAlone = key && m_aloneKeys.contains(*key) && !m_heldKeys.isCompose(keycode);
        const bool isOfChord = key && m_chordKeys.contains(*key);
        m_relevantKeys[index] = m_heldKeys.isModifier(keycode) || isAlone || isOfChord;
    }
    m_heldKeys.keepKeys(m_relevantKeys); // of the others no release will be heard
}

std::vector<WatchResult> X11KeyWatch::applyInterests() {
    const auto ofChords = m_grabs.hold(chords());
    m_hasTakenChords = std::ranges::count(ofChords, WatchResult::ChordTaken) > 0;
    std::vector<WatchResult> results;
    auto next = ofChords.begin();
    for (const auto& interest : m_interests) {
        if (chordOf(interest))
            results.push_back(*next++);
        else
            results.push_back(resultForKeyAlone(keyOf(interest)));
    }
    return results;
}

WatchResult X11KeyWatch::resultForKeyAlone(VirtualKey keyCode) {
    return isOnLayout(keyCode) && mayHaveKey(keyCode, *m_events, m_devices, m_sysfs)
               ? WatchResult::Watching
               : WatchResult::Unavailable;
}

/// Layouts can make Caps Lock another key, which locks nothing, and any key Compose. Right Ctrl decides for
/// the key that it shares with Right Super, since few keyboards have that one.
bool X11KeyWatch::isOnLayout(VirtualKey keyCode) const {
    if (keyCode == VirtualKey::RightCommand)
        return !m_heldKeys.isCompose(X11KeyCodes::rightControl);
    return std::ranges::any_of(X11KeyCodes::fromVirtual(keyCode), [this, keyCode](XKeycode keycode) {
        return keyCode == VirtualKey::CapsLock ? m_heldKeys.isLock(keycode) : !m_heldKeys.isCompose(keycode);
    });
}

std::vector<KeyChord> X11KeyWatch::chords() const {
    std::vector<KeyChord> chords;
    for (const auto& interest : m_interests) {
        if (const auto* chord = chordOf(interest))
            chords.push_back(*chord);
    }
    return chords;
}

void X11KeyWatch::suspend(const std::set<VirtualKey>& heardPresses) {
    m_isSuspended = true;
    m_reportedPresses = heardPresses;
    std::erase_if(m_reportedPresses, [this](VirtualKey key) {
        return !m_chordKeys.contains(key) && !m_aloneKeys.contains(key);
    });
    m_rawKeyDowns.clear();
    m_grabbedKeyDowns.clear();
    m_grabs.hold({});
}

void X11KeyWatch::resume() {
    m_hasMissedEnds = std::exchange(m_isSuspended, false) || m_hasMissedEnds;
}

void X11KeyWatch::reportMissedEnds() {
    for (const auto key : std::set(m_reportedPresses)) {
        if (isOn(key))
            continue;
        if (m_chordKeys.contains(key))
            reportChordEnd(key);
        else
            reportHeldKey(key);
    }
}

std::array<int, 2> X11KeyWatch::descriptors() const {
    return {m_events->descriptor(), m_grabs.connection().descriptor()};
}

bool X11KeyWatch::readEvents() {
    // Working off an event may read further ones into the queues, so both have to be found empty in a row.
    bool hasRead = true;
    while (hasRead) {
        hasRead = readRawEvent();
        hasRead = readGrabbedEvent() || hasRead;
    }
    m_events->flush();
    return !m_events->isBroken() && !m_grabs.connection().isBroken();
}

bool X11KeyWatch::readRawEvent() {
    const auto event = m_events->pollEvent();
    if (!event)
        return false;
    const auto type = eventType(*event);
    if (type == XCB_GE_GENERIC) {
        handleInput(reinterpret_cast<const xcb_ge_generic_event_t&>(*event));
    } else if (type == XCB_MAPPING_NOTIFY) {
        m_heldKeys.loadModifiers(*m_events);
        chooseRelevantKeys();
    }
    return true;
}

bool X11KeyWatch::readGrabbedEvent() {
    const auto keyDown = m_grabs.nextKeyDown();
    if (!keyDown)
        return false;
    m_grabbedKeyDowns[keyDown->keycode] = *keyDown;
    startChordIfBothSay(keyDown->keycode);
    return true;
}

void X11KeyWatch::handleInput(const xcb_ge_generic_event_t& event) {
    if (event.extension != m_inputExtension)
        return;
    if (event.event_type == XCB_INPUT_HIERARCHY) {
        m_devices.load(*m_events);
        return;
    }
    const auto& key = reinterpret_cast<const xcb_input_raw_key_press_event_t&>(event);
    if (key.detail >= m_relevantKeys.size() || m_devices.isPosted(key.sourceid))
        return;
    const auto keycode = XKeycode(key.detail);
    if (event.event_type == XCB_INPUT_RAW_KEY_PRESS)
        reportOtherKeyThan(X11KeyCodes::toVirtual(keycode));
    if (!m_relevantKeys[key.detail])
        return;
    if (event.event_type == XCB_INPUT_RAW_KEY_PRESS)
        pressed(key.sourceid, keycode, {.time = key.time, .lastRequest = event.full_sequence});
    else if (event.event_type == XCB_INPUT_RAW_KEY_RELEASE)
        released(key.sourceid, keycode);
}

void X11KeyWatch::pressed(std::uint16_t device, XKeycode keycode, const Moment& moment) {
    m_heldKeys.press(device, keycode);
    const auto key = X11KeyCodes::toVirtual(keycode);
    if (key == VirtualKey::CapsLock)
        m_capsLock.press();
    if (!key || m_isSuspended)
        return;
    if (m_aloneKeys.contains(*key))
        reportHeldKey(*key);
    if (m_chordKeys.contains(*key)) {
        m_rawKeyDowns[keycode] = {.time = moment.time};
        startChordIfBothSay(keycode);
        if (isBeforeReturn(keycode, moment))
            startChordThatPassed(keycode);
        retryTakenChords(*key);
    }
}

void X11KeyWatch::released(std::uint16_t device, XKeycode keycode) {
    m_heldKeys.release(device, keycode);
    const auto key = X11KeyCodes::toVirtual(keycode);
    if (key == VirtualKey::CapsLock)
        m_capsLock.release();
    if (!key || m_isSuspended)
        return;
    if (m_aloneKeys.contains(*key))
        reportHeldKey(*key);
    if (const auto untold = m_rawKeyDowns.find(keycode); untold != m_rawKeyDowns.end())
        untold->second.isReleased = true;
    if (m_chordKeys.contains(*key) && m_reportedPresses.contains(*key) && !isHeld(*key))
        reportChordEnd(*key);
    if (!m_heldKeys.isHeld(keycode) && m_grabs.takeBack(keycode)) {
        applyInterests();
        m_return = Return{keycode, xcb_no_operation(m_events->get()).sequence};
        m_events->roundTrip();
    }
}

/// Whether the key may have gone down while its grabs, let go for the stroke before, were not back yet.
bool X11KeyWatch::isBeforeReturn(XKeycode keycode, const Moment& moment) const {
    // Numbers of requests wrap around.
    return m_return && m_return->keycode == keycode &&
           static_cast<std::int32_t>(moment.lastRequest - m_return->request) < 0;
}

/// Fingers are quicker than the server's answer: a chord that is struck again at once goes to the
/// application, but it is meant for us. The raw events alone tell it then.
void X11KeyWatch::startChordThatPassed(XKeycode keycode) {
    m_grabs.connection().roundTrip(); // if it came to us nevertheless, that has been told by now
    while (readGrabbedEvent()) {
    }
    if (!m_rawKeyDowns.contains(keycode))
        return;
    const auto key = *X11KeyCodes::toVirtual(keycode);
    const auto held = flags(key);
    if (pressedChord(key, held))
        startChord(keycode, held);
}

void X11KeyWatch::startChordIfBothSay(XKeycode keycode) {
    const auto raw = m_rawKeyDowns.find(keycode);
    const auto grabbed = m_grabbedKeyDowns.find(keycode);
    if (m_isSuspended || raw == m_rawKeyDowns.end() || grabbed == m_grabbedKeyDowns.end() ||
        raw->second.time != grabbed->second.time)
        return;
    const auto state = grabbed->second.state;
    m_grabbedKeyDowns.erase(grabbed);
    startChord(keycode, X11KeyCodes::flagsFromState(state));
}

void X11KeyWatch::startChord(XKeycode keycode, std::uint64_t flags) {
    const bool isReleased = m_rawKeyDowns.extract(keycode).mapped().isReleased;
    const auto key = *X11KeyCodes::toVirtual(keycode);
    m_reportedPresses.insert(key);
    m_report({.type = KeyEventType::KeyDown, .keyCode = key, .flags = flags});
    const auto* chord = pressedChord(key, flags);
    if (isReleased)
        reportChordEnd(key); // a short tap: the other connection was ahead
    else if (chord && std::holds_alternative<KeyStroke>(*chord) && !isOtherChordHeld(key))
        m_grabs.letPass(keycode);
}

/// The newest of the chords that are pressed by this decides; null when there is none.
const KeyInterest* X11KeyWatch::pressedChord(VirtualKey keyCode, std::uint64_t flags) const {
    const auto newest =
        std::find_if(m_interests.rbegin(), m_interests.rend(), [keyCode, flags](const KeyInterest& interest) {
            const auto* chord = chordOf(interest);
            return chord && chord->keyCode == keyCode && (flags & chord->modifiers) == chord->modifiers;
        });
    return newest != m_interests.rend() ? &*newest : nullptr;
}

/// Then the server gives us the whole keyboard until that one is let go.
bool X11KeyWatch::isOtherChordHeld(VirtualKey keyCode) const {
    return std::ranges::any_of(m_reportedPresses, [this, keyCode](VirtualKey key) {
        return key != keyCode && m_chordKeys.contains(key);
    });
}

void X11KeyWatch::reportChordEnd(VirtualKey keyCode) {
    m_reportedPresses.erase(keyCode);
    m_report({.type = KeyEventType::KeyUp, .keyCode = keyCode, .flags = flags(keyCode)});
}

void X11KeyWatch::reportHeldKey(VirtualKey keyCode) {
    const KeyEvent event{.type = KeyEventType::FlagsChanged, .keyCode = keyCode, .flags = flags(keyCode)};
    if (!isPress(event))
        m_reportedPresses.erase(keyCode);
    else if (m_reportedPresses.insert(keyCode).second)
        m_isOtherKeyReported = false;
    m_report(event);
}

void X11KeyWatch::reportOtherKeyThan(std::optional<VirtualKey> key) {
    const bool isHeldAlone = std::ranges::any_of(m_reportedPresses, [this, key](VirtualKey held) {
        return m_aloneKeys.contains(held) && key != held;
    });
    if (m_isSuspended || !isHeldAlone || std::exchange(m_isOtherKeyReported, true))
        return;
    m_report(
        {.type = KeyEventType::KeyDown, .keyCode = VirtualKey::Unnamed, .flags = flags(VirtualKey::Unnamed)});
}

/// The program that held a chord may have ended. The user asks for the chord now, so that the next press can
/// be ours.
void X11KeyWatch::retryTakenChords(VirtualKey keyCode) {
    if (!m_hasTakenChords)
        return;
    const auto held = m_heldKeys.flags(keyCode);
    const bool isAskedFor = std::ranges::any_of(chords(), [&](const KeyChord& chord) {
        return chord.keyCode == keyCode && (held & chord.modifiers) == chord.modifiers;
    });
    if (isAskedFor)
        applyInterests();
}

bool X11KeyWatch::isHeld(VirtualKey keyCode) const {
    return std::ranges::any_of(X11KeyCodes::fromVirtual(keyCode),
                               [this](XKeycode keycode) { return m_heldKeys.isHeld(keycode); });
}

/// The press that was reported for this key has not ended.
bool X11KeyWatch::isOn(VirtualKey keyCode) {
    return m_chordKeys.contains(keyCode) ? isHeld(keyCode)
                                         : (flags(keyCode) & flagOfModifierKey(keyCode)) != 0;
}

std::uint64_t X11KeyWatch::flags(VirtualKey about) {
    const auto held = m_heldKeys.flags(about);
    return m_capsLock.isOn() ? held | KeyFlag::CapsLock : held;
}

} // namespace talvera
