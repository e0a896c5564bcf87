// SPDX-License-Identifier: MIT
#include "shell/settings/HotkeyRecorderModel.h"

#include "hotkeys/HotkeyManager.h"
#include "hotkeys/TranslateToggleHotkey.h"
#include "persistence/AppSettings.h"
#include "platform/keyboard/WindowKeys.h"
#include "platform/sound/SoundPlayer.h"
#include "text/Localization.h"

namespace talvera {

namespace {

/// The low one of our sounds stands in for the system's beep, which desktops don't have in common.
const auto beepSound = QStringLiteral("Basso");

} // namespace

HotkeyRecorderModel::HotkeyRecorderModel(Parts parts, HotkeyManager& hotkey)
    : HotkeyRecorderModel(
          parts,
          {.binding = [&setting = parts.settings.hotkeyBinding] { return std::optional(setting.get()); },
           .assign =
               [&setting = parts.settings.hotkeyBinding](const auto& binding) {
                   if (binding)
                       setting.set(*binding);
               },
           .watchResult = hotkey.watchResult(),
           .takesSpecialKeys = true}) {
    m_cancellables.push_back(parts.settings.hotkeyBinding.observe([this](const auto&) {
        Q_EMIT shortcutChanged();
        Q_EMIT refusalChanged();
    }));
}

HotkeyRecorderModel::HotkeyRecorderModel(Parts parts, TranslateToggleHotkey& toggle)
    : HotkeyRecorderModel(
          parts, {.binding = [&setting = parts.settings.translateToggleBinding] { return setting.get(); },
                  .assign = [&setting = parts.settings.translateToggleBinding](
                                const auto& binding) { setting.set(binding); },
                  .watchResult = toggle.watchResult(),
                  .takesSpecialKeys = false}) {
    m_cancellables.push_back(parts.settings.translateToggleBinding.observe([this](const auto&) {
        Q_EMIT shortcutChanged();
        Q_EMIT refusalChanged();
    }));
}

HotkeyRecorderModel::HotkeyRecorderModel(Parts parts, Subject subject)
    : m_parts(parts)
    , m_subject(std::move(subject))
    , m_recorder([&sounds = parts.sounds] { sounds.play(beepSound); }) {
    follow();
}

HotkeyRecorderModel::~HotkeyRecorderModel() {
    cancel();
}

void HotkeyRecorderModel::follow() {
    m_recorder.onCapture = [this](const HotkeyBinding& binding) { m_subject.assign(binding); };
    m_recorder.view.onFirstResponder = [this] { Q_EMIT keyboardWanted(); };
    m_cancellables.push_back(m_recorder.isRecording.observe([this](bool recording) {
        m_parts.suspendHotkey.set(recording);
        m_recorder.update();
        Q_EMIT isRecordingChanged();
    }));
    m_cancellables.push_back(m_recorder.view.isArmed.observe([this](bool armed) {
        setRecording(armed); // a click begins a recording, and Escape ends it
        Q_EMIT isArmedChanged();
    }));
    m_cancellables.push_back(m_subject.watchResult.observe([this](const auto&) { Q_EMIT refusalChanged(); }));
}

void HotkeyRecorderModel::setRecording(bool recording) {
    if (isRecording() != recording)
        m_recorder.isRecording.set(recording);
}

QString HotkeyRecorderModel::prompt() const {
    return isArmed() ? localized("hotkey.recorder.armed", "Press a shortcut…")
                     : localized("hotkey.recorder.idle", "Click to record");
}

QString HotkeyRecorderModel::shortcut() const {
    const auto binding = m_subject.binding();
    return binding ? binding->displayString(m_parts.layout) : QString();
}

QStringList HotkeyRecorderModel::keyCaps() const {
    const auto binding = m_subject.binding();
    return binding ? binding->keyCaps(m_parts.layout) : QStringList();
}

QString HotkeyRecorderModel::refusal() const {
    const auto binding = m_subject.binding();
    if (binding && binding->asSpecialKey() && !m_subject.takesSpecialKeys)
        return localized("hotkey.recorder.chordNeeded",
                         "A key alone can't do this — choose several, such as ⌃⌥T");
    const auto& result = m_subject.watchResult.get();
    if (!binding || !result || *result == WatchResult::Watching)
        return {};
    return formatted(*result == WatchResult::ChordTaken
                         ? localized("hotkey.recorder.taken", "Another program uses %@ — choose another one")
                         : localized("hotkey.recorder.unavailable", "No keyboard here has %@"),
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
    m_subject.assign(std::nullopt);
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
