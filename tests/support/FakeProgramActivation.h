// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/ProgramActivation.h"

#include <utility>

namespace talvera::test {

/// A program that the user turns to when the test says so.
class FakeProgramActivation final : public ProgramActivation {
public:
    void activate() { m_activations.set(m_activations.get() + 1); }

    Subscription observe(std::function<void()> activated) override {
        return m_activations.observe([activated = std::move(activated)](int) { activated(); });
    }

private:
    Published<int> m_activations{0};
};

} // namespace talvera::test
