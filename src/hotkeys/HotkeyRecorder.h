// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Published.h"
#include "hotkeys/HotkeyBinding.h"

#include <cstdint>
#include <functional>

namespace talvera {

/// The control with which the user teaches the program a new binding: what it makes of clicks and keys. How
/// it looks, and what else stands still while it listens, is its host's business. Main thread only.
class HotkeyRecorder {
public:
    class RecorderView {
    public:
        /// `beep` tells the user that a key can't be taken.
        explicit RecorderView(std::function<void()> beep);

        /// Where a result goes.
        std::function<void(const HotkeyBinding&)> onCapture;
        /// The view is to get the keyboard of its window.
        std::function<void()> onFirstResponder;
        /// The view is listening.
        Published<bool> isArmed{false};

        void mouseDown();

        /// The host tells what it knows of the recording.
        void hostUpdate(bool isRecording);

        /// A key that is no modifier has gone down, or is repeated; `flags` are the KeyFlag bits then. False
        /// when the key isn't for this view.
        bool keyDown(VirtualKey keyCode, std::uint64_t flags);

        /// A modifier key has changed; `flags` are the KeyFlag bits after that. False as above.
        bool flagsChanged(VirtualKey keyCode, std::uint64_t flags);

    private:
        void capture(const HotkeyBinding& binding);

        std::function<void()> m_beep;
    };

    /// `beep` as for the view.
    explicit HotkeyRecorder(std::function<void()> beep);
    HotkeyRecorder(const HotkeyRecorder&) = delete;
    HotkeyRecorder& operator=(const HotkeyRecorder&) = delete;

    /// Shared with the host: it begins and ends a recording by it, and a capture ends one.
    Published<bool> isRecording{false};
    /// The user has chosen this.
    std::function<void(const HotkeyBinding&)> onCapture;

    /// Brings the view in step with `isRecording`.
    void update() { view.hostUpdate(isRecording.get()); }

    RecorderView view;
};

} // namespace talvera
