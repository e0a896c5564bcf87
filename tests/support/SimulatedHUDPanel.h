// SPDX-License-Identifier: MIT
#pragma once

#include "SimulatedMainActor.h"
#include "shell/hud/HUDPanel.h"

#include <optional>
#include <utility>

namespace talvera::test {

/// A panel on the virtual clock that takes the real one's time to fade out.
class SimulatedHUDPanel final : public HUDPanel {
public:
    explicit SimulatedHUDPanel(SimulatedMainActor& actor)
        : m_actor(actor) {}

    bool isVisible() const override { return m_visible; }
    void fadeIn() override {
        if (const auto withdrawal = std::exchange(m_withdrawal, std::nullopt))
            m_actor.cancelTimer(*withdrawal);
        m_visible = true;
        ++fadeIns;
    }
    void fadeOut(std::function<void()> completion) override {
        ++fadesUnderWay;
        m_actor.startTimer(fade, [this, completion = std::move(completion)] {
            --fadesUnderWay;
            m_visible = false;
            completion();
        });
    }
    void withdraw() override {
        m_withdrawal = m_actor.startTimer(fade, [this] {
            m_withdrawal.reset();
            m_visible = false;
        });
    }
    void setIgnoresMouseEvents(bool ignores) override { ignoresMouseEvents = ignores; }

    static constexpr Duration fade = seconds(0.18);

    bool ignoresMouseEvents = true;
    int fadeIns = 0;
    int fadesUnderWay = 0; ///< fades out that have not ended

private:
    SimulatedMainActor& m_actor;
    bool m_visible = false;
    std::optional<MainActor::TimerId> m_withdrawal;
};

} // namespace talvera::test
