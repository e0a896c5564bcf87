// SPDX-License-Identifier: MIT
#include "FakeEventTap.h"

#include <algorithm>
#include <utility>

namespace talvera::test {

FakeEventTap::FakeEventTap(FakeKeyboard& keyboard, Callback callback)
    : m_keyboard(keyboard)
    , m_callback(std::move(callback)) {
    m_keyboard.m_taps.push_back(this);
}

FakeEventTap::~FakeEventTap() {
    std::erase(m_keyboard.m_taps, this);
}

void FakeEventTap::setEnabled(bool enabled) {
    m_isEnabled = enabled;
    if (!enabled)
        m_pressTold.reset();
    if (!std::exchange(m_hasMissedKeys, false) || !m_pressTold || m_keyboard.isOn(m_pressTold->keyCode))
        return;
    auto end = *m_pressTold;
    if (end.type == KeyEventType::KeyDown)
        end.type = KeyEventType::KeyUp;
    end.flags = m_keyboard.flags();
    tell(end);
}

WatchResult FakeEventTap::watchChord(const KeyChord& chord) {
    if (m_chord != chord)
        m_pressTold.reset();
    m_chord = chord;
    m_key.reset();
    if (m_keyboard.missingKeys.contains(chord.keyCode))
        return WatchResult::Unavailable;
    return std::ranges::count(m_keyboard.takenChords, chord) > 0 ? WatchResult::ChordTaken
                                                                 : WatchResult::Watching;
}

WatchResult FakeEventTap::watchKey(VirtualKey keyCode) {
    if (!m_keyboard.hearsKeysAlone()) {
        watchNothing();
        return WatchResult::ChordsOnly;
    }
    if (m_key != keyCode)
        m_pressTold.reset();
    m_key = keyCode;
    m_chord.reset();
    return m_keyboard.missingKeys.contains(keyCode) ? WatchResult::Unavailable : WatchResult::Watching;
}

void FakeEventTap::watchNothing() {
    m_pressTold.reset();
    m_chord.reset();
    m_key.reset();
}

Verdict FakeEventTap::tell(const KeyEvent& event) {
    const bool isWatched =
        (m_chord && event.keyCode == m_chord->keyCode) || (m_key && event.keyCode == *m_key);
    if (isWatched) {
        const bool isPress = event.type == KeyEventType::KeyDown ||
                             (event.type == KeyEventType::FlagsChanged && m_keyboard.isOn(event.keyCode));
        m_pressTold = isPress ? std::optional(event) : std::nullopt;
    }
    return m_callback(event);
}

std::unique_ptr<EventTap> FakeKeyboard::create(EventTap::Callback callback) {
    if (refusesTaps)
        return nullptr;
    ++m_tapsCreated;
    return std::make_unique<FakeEventTap>(*this, std::move(callback));
}

Verdict FakeKeyboard::send(const KeyEvent& event) {
    const auto verdict = offer(event);
    if (verdict == Verdict::Pass)
        m_passed.push_back(event);
    return verdict;
}

Verdict FakeKeyboard::offer(const KeyEvent& event) {
    const auto newestFirst = std::vector(m_taps.rbegin(), m_taps.rend());
    for (auto* tap : newestFirst) {
        if (!tap->m_isEnabled || tap->m_isBroken)
            continue;
        if (!m_isListening) {
            tap->m_isEnabled = false;
            tap->m_timedOut = true;
            tap->m_hasMissedKeys = true;
        } else if (tap->tell(event) == Verdict::Swallow) {
            return Verdict::Swallow;
        }
    }
    return Verdict::Pass;
}

void FakeKeyboard::listenAgain() {
    m_isListening = true;
    for (auto* tap : std::vector(m_taps)) {
        if (std::exchange(tap->m_timedOut, false))
            tap->m_callback({.type = KeyEventType::TapDisabledByTimeout});
    }
}

void FakeKeyboard::become(const FakeKeyboard& other) {
    m_held = other.m_held;
    m_capsLock = other.m_capsLock;
    m_capsLockEnds = other.m_capsLockEnds;
}

void FakeKeyboard::breakTaps() {
    for (auto* tap : m_taps)
        tap->m_isBroken = true;
}

bool FakeKeyboard::isOn(VirtualKey keyCode) const {
    return keyCode == VirtualKey::CapsLock ? m_capsLock : m_held.contains(keyCode);
}

std::uint64_t FakeKeyboard::flags() const {
    std::uint64_t flags = 0;
    if (m_capsLock)
        flags |= KeyFlag::CapsLock;
    for (const auto key : m_held)
        flags |= flagOfModifierKey(key);
    return flags;
}

void FakeKeyboard::press(VirtualKey keyCode) {
    m_held.insert(keyCode);
    if (keyCode == VirtualKey::CapsLock) {
        m_capsLockEnds = m_capsLock;
        m_capsLock = true;
    }
    const auto type = isModifierKey(keyCode) ? KeyEventType::FlagsChanged : KeyEventType::KeyDown;
    send({.type = type, .keyCode = keyCode, .flags = flags()});
}

void FakeKeyboard::repeat(VirtualKey keyCode) {
    send({.type = KeyEventType::KeyDown, .keyCode = keyCode, .flags = flags(), .autorepeat = true});
}

void FakeKeyboard::release(VirtualKey keyCode) {
    m_held.erase(keyCode);
    if (keyCode == VirtualKey::CapsLock && m_capsLockEnds)
        m_capsLock = false;
    const auto type = isModifierKey(keyCode) ? KeyEventType::FlagsChanged : KeyEventType::KeyUp;
    send({.type = type, .keyCode = keyCode, .flags = flags()});
}

void FakeKeyboard::tap(VirtualKey keyCode) {
    press(keyCode);
    release(keyCode);
}

} // namespace talvera::test
