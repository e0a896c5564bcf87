// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Published.h"
#include "hotkeys/HotkeyRecorder.h"
#include "platform/keyboard/EventTap.h"

#include <QObject>
#include <QStringList>

#include <cstdint>
#include <optional>

namespace talvera {

class AppSettings;
class HotkeyManager;
class KeyboardLayout;
class SoundPlayer;
class TranslateToggleHotkey;
class WindowKeys;

/// The host of a HotkeyRecorder: which shortcut is set, whether it acts, and the recording of another one.
/// While one is recorded the hotkey does nothing. A chord that is bound doesn't reach the field, which then
/// says what the chord does. Main thread only.
class HotkeyRecorderModel final : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isArmed READ isArmed NOTIFY isArmedChanged)
    Q_PROPERTY(bool isRecording READ isRecording NOTIFY isRecordingChanged)
    Q_PROPERTY(QString prompt READ prompt NOTIFY isArmedChanged)
    Q_PROPERTY(QString idlePrompt READ idlePrompt CONSTANT)
    Q_PROPERTY(QString armedPrompt READ armedPrompt CONSTANT)
    Q_PROPERTY(QString shortcut READ shortcut NOTIFY shortcutChanged)
    Q_PROPERTY(QStringList keyCaps READ keyCaps NOTIFY shortcutChanged)
    Q_PROPERTY(QString refusal READ refusal NOTIFY refusalChanged)
    Q_PROPERTY(QString boundChord READ boundChord NOTIFY boundChordChanged)

public:
    struct Parts {
        AppSettings& settings;
        SoundPlayer& sounds;
        KeyboardLayout& layout;
        const WindowKeys& keys;
        /// Set while a shortcut is recorded. When it is cleared, or set by another model, the recording ends.
        Published<bool>& suspendHotkey;
        HotkeyManager& hotkey;
        TranslateToggleHotkey& toggle;
    };

    /// The key that the user holds to talk, and the one that switches translation.
    enum class Shortcut { Hotkey, TranslateToggle };

    HotkeyRecorderModel(Parts parts, Shortcut shortcut);
    ~HotkeyRecorderModel() override;

    bool isArmed() const { return m_recorder.view.isArmed.get(); }
    bool isRecording() const { return m_recorder.isRecording.get(); }

    /// What the field says of itself, now and in either state.
    QString prompt() const { return isArmed() ? armedPrompt() : idlePrompt(); }
    QString idlePrompt() const;
    QString armedPrompt() const;
    /// The shortcut that is set, in words and as caps; empty when none is.
    QString shortcut() const;
    QStringList keyCaps() const;
    /// Why the shortcut doesn't act; empty when it does, and as long as nothing is known.
    QString refusal() const;
    /// What the chord does that was struck during this recording and didn't reach the field; empty when none
    /// was.
    QString boundChord() const { return m_boundChord; }

    /// Begins a recording, as a click on the field does.
    Q_INVOKABLE void record();
    /// Ends one with nothing captured: the field has lost the keyboard, or its window closes.
    Q_INVOKABLE void cancel();
    /// Ends one and leaves no shortcut; only for the key that switches translation.
    Q_INVOKABLE void clear();

    /// A key has gone down in the field. False when it isn't for it.
    bool press(std::uint32_t scanCode, std::uint32_t symbol, std::uint32_t modifiers, bool autorepeat);

Q_SIGNALS:
    void isArmedChanged();
    void isRecordingChanged();
    void shortcutChanged();
    void refusalChanged();
    void boundChordChanged();
    /// The field is to get the keyboard of its window.
    void keyboardWanted();

private:
    bool isForHotkey() const { return m_shortcut == Shortcut::Hotkey; }
    std::optional<HotkeyBinding> binding() const;
    Published<std::optional<WatchResult>>& watchResult() const;
    void assign(const HotkeyBinding& binding);

    void followRecorder();
    void followShortcuts();
    void setRecording(bool recording);
    void suspendHotkey(bool suspend);
    void sayWhatBoundChordDoes(Shortcut struck);
    void setBoundChord(const QString& text);

    const Parts m_parts;
    const Shortcut m_shortcut;
    HotkeyRecorder m_recorder;
    bool m_suspends = false; ///< the hotkey does nothing because of this recording
    QString m_boundChord;
    Cancellables m_cancellables;
};

} // namespace talvera
