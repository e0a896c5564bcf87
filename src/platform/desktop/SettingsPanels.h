// SPDX-License-Identifier: MIT
#pragma once

namespace talvera {

/// The desktop's own settings. Main thread only.
class SettingsPanels {
public:
    enum class Panel { Microphone, Accessibility, LanguageModel, Keyboard };

    virtual ~SettingsPanels() = default;

    /// Opens the panel, or the nearest thing that this desktop has. False when it has nothing.
    virtual bool open(Panel panel) = 0;
};

} // namespace talvera
