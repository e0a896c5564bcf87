// SPDX-License-Identifier: MIT
#include "shell/settings/HotkeyRecorderModel.h"

#include "hotkeys/HotkeyManager.h"
#include "hotkeys/TranslateToggleHotkey.h"
#include "persistence/AppSettings.h"
#include "platform/keyboard/WindowKeys.h"
#include "platform/sound/SoundPlayer.h"
#include "text/Localization.h"

#include <utility>

namespace talvera {

namespace {

/// The low one of our sounds stands in for the system's beep, which desktops don't have in common.
const auto beepSound = QStringLiteral("Basso");

} // namespace

HotkeyRecorderModel::HotkeyRecorderModel(Parts parts, Shortcut shortcut)
    : m_parts(parts)
    , m_shortcut(shortcut)
    , m_recorder([&sounds = parts.sounds] { sounds.play(beepSound); }) {
    followRecorder();
    followShortcuts();
}

HotkeyRecorderModel::~HotkeyRecorderModel() {
    cancel();
}

void HotkeyRecorderModel::followRecorder() {
    m_recorder.onCapture = [this](const HotkeyBinding& captured) { assign(captured); };
    m_recorder.view.onFirstResponder = [this] { Q_EMIT keyboardWanted(); };
    m_cancellables.push_back(m_recorder.isRecording.observe([this](bool recording) {
        setBoundChord({});
        suspendHotkey(recording);
        m_recorder.update();
        Q_EMIT isRecordingChanged();
    }));
    m_cancellables.push_back(m_recorder.view.isArmed.observe([this](bool armed) {
        setRecording(armed); // a click begins a recording, and Escape ends it
        Q_EMIT isArmedChanged();
    }));
    m_cancellables.push_back(m_parts.suspendHotkey.observe([this](bool suspended) {
        if (!suspended && m_suspends)
            cancel();
    }));
}

void HotkeyRecorderModel::followShortcuts() {
    const auto tell = [this](const auto&) {
        Q_EMIT shortcutChanged();
        Q_EMIT refusalChanged();
    };
    m_cancellables.push_back(isForHotkey() ? m_parts.settings.hotkeyBinding.observe(tell)
                                           : m_parts.settings.translateToggleBinding.observe(tell));
    m_cancellables.push_back(watchResult().observe([this](const auto&) { Q_EMIT refusalChanged(); }));
    m_cancellables.push_back(
        m_parts.hotkey.presses().observe([this](int) { sayWhatBoundChordDoes(Shortcut::Hotkey); }));
    m_cancellables.push_back(
        m_parts.toggle.presses().observe([this](int) { sayWhatBoundChordDoes(Shortcut::TranslateToggle); }));
}

std::optional<HotkeyBinding> HotkeyRecorderModel::binding() const {
    return isForHotkey() ? m_parts.settings.hotkeyBinding.get()
                         : m_parts.settings.translateToggleBinding.get();
}

Published<std::optional<WatchResult>>& HotkeyRecorderModel::watchResult() const {
    return isForHotkey() ? m_parts.hotkey.watchResult() : m_parts.toggle.watchResult();
}

void HotkeyRecorderModel::assign(const HotkeyBinding& binding) {
    if (isForHotkey())
        m_parts.settings.hotkeyBinding.set(binding);
    else
        m_parts.settings.translateToggleBinding.set(binding);
}

void HotkeyRecorderModel::setRecording(bool recording) {
    if (isRecording() != recording)
        m_recorder.isRecording.set(recording);
}

/// One shortcut is recorded at a time: clearing the flag first ends the recording of another field.
void HotkeyRecorderModel::suspendHotkey(bool suspend) {
    if (std::exchange(m_suspends, false) || suspend)
        m_parts.suspendHotkey.set(false);
    m_suspends = suspend;
    if (suspend)
        m_parts.suspendHotkey.set(true);
}

void HotkeyRecorderModel::sayWhatBoundChordDoes(Shortcut struck) {
    if (!isRecording())
        return;
    const bool isHotkey = struck == Shortcut::Hotkey;
    const auto bound =
        isHotkey ? m_parts.settings.hotkeyBinding.get() : m_parts.settings.translateToggleBinding.get();
    if (!bound)
        return;
    const auto text =
        struck == m_shortcut
            ? localized("hotkey.recorder.setAlready", "%@ is set already — press another one")
        : isHotkey ? localized("hotkey.recorder.isHotkey", "%@ is your hotkey — press another one")
                   : localized("hotkey.recorder.isToggle", "%@ switches translation — press another one");
    setBoundChord(formatted(text, bound->displayString(m_parts.layout)));
}

void HotkeyRecorderModel::setBoundChord(const QString& text) {
    if (std::exchange(m_boundChord, text) != text)
        Q_EMIT boundChordChanged();
}

QString HotkeyRecorderModel::idlePrompt() const {
    return localized("hotkey.recorder.idle", "Click to record");
}

QString HotkeyRecorderModel::armedPrompt() const {
    return localized("hotkey.recorder.armed", "Press a shortcut…");
}

QString HotkeyRecorderModel::shortcut() const {
    const auto bound = binding();
    return bound ? bound->displayString(m_parts.layout) : QString();
}

QStringList HotkeyRecorderModel::keyCaps() const {
    const auto bound = binding();
    return bound ? bound->keyCaps(m_parts.layout) : QStringList();
}

QString HotkeyRecorderModel::refusal() const {
    const auto bound = binding();
    if (bound && bound->asSpecialKey() && !isForHotkey())
        return localized("hotkey.recorder.chordNeeded",
                         "A key alone can't do this — choose several, such as ⌃⌥T");
    const auto& result = watchResult().get();
    if (!bound || !result || *result == WatchResult::Watching)
        return {};
    if (*result == WatchResult::ChordsOnly)
        return localized("hotkey.recorder.chordNeeded",
                         "A key alone can't do this — choose several, such as ⌃⌥T");
    return formatted(
        *result == WatchResult::ChordTaken
            ? localized("hotkey.recorder.taken", "Another program uses %@ — choose another one")
            : localized("hotkey.recorder.unavailable", "No keyboard here has %@ — choose another one"),
        shortcut());
}

void HotkeyRecorderModel::record() {
    m_recorder.view.mouseDown();
}

void HotkeyRecorderModel::cancel() {
    if (isRecording())
        m_recorder.isRecording.set(false);
}

void HotkeyRecorderModel::clear() {
    cancel();
    if (!isForHotkey())
        m_parts.settings.translateToggleBinding.set(std::nullopt);
}

bool HotkeyRecorderModel::press(std::uint32_t scanCode, std::uint32_t symbol, std::uint32_t modifiers,
                                bool autorepeat) {
    if (!isArmed())
        return false;
    const auto event = m_parts.keys.read({scanCode, symbol, modifiers, autorepeat});
    if (!event)
        return true; // a key that no binding can name
    return event->type == KeyEventType::KeyDown ? m_recorder.view.keyDown(event->keyCode, event->flags)
                                                : m_recorder.view.flagsChanged(event->keyCode, event->flags);
}

} // namespace talvera
