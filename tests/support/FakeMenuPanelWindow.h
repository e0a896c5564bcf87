// SPDX-License-Identifier: MIT
#pragma once

#include "SimulatedMainActor.h"
#include "shell/panel/MenuPanelWindow.h"

namespace talvera::test {

/// A window on the virtual clock that takes the real one's time to fade out.
class FakeMenuPanelWindow final : public MenuPanelWindow {
public:
    explicit FakeMenuPanelWindow(SimulatedMainActor& actor)
        : m_actor(actor) {}
    ~FakeMenuPanelWindow() override { stopFade(); }

    int contentHeight = 480;
    ScreenArea screen{{0, 0, 1280, 800}, {0, 28, 1280, 772}};
    int contentsMade = 0;
    std::function<void()> onShown;

    bool isVisible() const override { return m_visible; }
    void renewContent() override { ++contentsMade; }
    int fittingHeight() const override { return contentHeight; }
    ScreenArea screenOf(const std::optional<QRect>&) const override { return screen; }
    void fadeIn(const QRect& frame) override {
        stopFade();
        m_visible = true;
        m_frame = frame;
        if (onShown)
            onShown();
    }
    void fadeOut() override {
        stopFade();
        m_fade = m_actor.startTimer(seconds(0.1), [this] {
            m_fade.reset();
            m_visible = false;
        });
    }
    void setFrame(const QRect& frame) override { m_frame = frame; }
    QRect frame() const override { return m_frame; }

private:
    void stopFade() {
        if (m_fade)
            m_actor.cancelTimer(*m_fade);
        m_fade.reset();
    }

    SimulatedMainActor& m_actor;
    bool m_visible = false;
    QRect m_frame;
    std::optional<MainActor::TimerId> m_fade;
};

} // namespace talvera::test
