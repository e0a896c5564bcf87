// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Published.h"
#include "hotkeys/HotkeyRecorder.h"
#include "platform/keyboard/EventTap.h"

#include <QObject>
#include <QStringList>

#include <cstdint>
#include <functional>
#include <optional>

namespace talvera {

class AppSettings;
class HotkeyManager;
class KeyboardLayout;
class SoundPlayer;
class TranslateToggleHotkey;
class WindowKeys;

/// The host of a HotkeyRecorder: which shortcut is set, whether it acts, and the recording of another one.
/// While one is recorded the hotkeys stand still. Main thread only.
class HotkeyRecorderModel final : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isArmed READ isArmed NOTIFY isArmedChanged)
    Q_PROPERTY(bool isRecording READ isRecording NOTIFY isRecordingChanged)
    Q_PROPERTY(QString prompt READ prompt NOTIFY isArmedChanged)
    Q_PROPERTY(QString shortcut READ shortcut NOTIFY shortcutChanged)
    Q_PROPERTY(QStringList keyCaps READ keyCaps NOTIFY shortcutChanged)
    Q_PROPERTY(QString refusal READ refusal NOTIFY refusalChanged)

public:
    struct Parts {
        AppSettings& settings;
        SoundPlayer& sounds;
        KeyboardLayout& layout;
        const WindowKeys& keys;
        /// Set while a shortcut is recorded: the hotkeys do nothing.
        Published<bool>& suspendHotkey;
    };

    /// For the key that the user holds to talk, and for the one that switches translation.
    HotkeyRecorderModel(Parts parts, HotkeyManager& hotkey);
    HotkeyRecorderModel(Parts parts, TranslateToggleHotkey& toggle);
    ~HotkeyRecorderModel() override;

    bool isArmed() const { return m_recorder.view.isArmed.get(); }
    bool isRecording() const { return m_recorder.isRecording.get(); }

    /// What the field says of itself.
    QString prompt() const;
    /// The shortcut that is set, in words and as caps; empty when none is.
    QString shortcut() const;
    QStringList keyCaps() const;
    /// Why the shortcut doesn't act; empty when it does, and as long as nothing is known.
    QString refusal() const;

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
    /// The field is to get the keyboard of its window.
    void keyboardWanted();

private:
    /// The shortcut that this one is for.
    struct Subject {
        std::function<std::optional<HotkeyBinding>()> binding;
        std::function<void(const std::optional<HotkeyBinding>&)> assign;
        Published<std::optional<WatchResult>>& watchResult;
        bool takesSpecialKeys;
    };

    HotkeyRecorderModel(Parts parts, Subject subject);
    void follow();
    void setRecording(bool recording);

    const Parts m_parts;
    const Subject m_subject;
    HotkeyRecorder m_recorder;
    Cancellables m_cancellables;
};

} // namespace talvera
