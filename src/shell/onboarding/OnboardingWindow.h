// SPDX-License-Identifier: MIT
#pragma once

namespace talvera {

/// The wizard's window. Main thread only.
class OnboardingWindow {
public:
    virtual ~OnboardingWindow() = default;

    /// Brings the wizard up, or to the front.
    virtual void show() = 0;
};

} // namespace talvera
