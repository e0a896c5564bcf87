// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Lifetime.h"
#include "concurrency/MainActor.h"
#include "concurrency/Published.h"
#include "shell/hud/HUDModel.h"
#include "shell/hud/HUDPanel.h"

#include <QQuickItem>
#include <QQuickWindow>
#include <QVariantAnimation>

#include <optional>

namespace talvera {

class AppSettings;
class OverlayDesktop;
class OverlayWindow;
class ViewEngine;

/// The HUD's window, made with everything in it so that it is on screen within a frame when it is asked for.
class QuickHUDPanel final : public HUDPanel {
public:
    /// What the panel works with; all of it outlives the panel.
    struct Parts {
        MainActor& actor;
        ViewEngine& views;
        OverlayDesktop& desktop;
        StateHolder& holder;
        AppSettings& settings;
    };

    explicit QuickHUDPanel(const Parts& parts);
    ~QuickHUDPanel() override;

    bool isVisible() const override { return m_window.isVisible(); }
    void fadeIn() override;
    void fadeOut(std::function<void()> completion) override;
    void withdraw() override;
    void setIgnoresMouseEvents(bool ignores) override;

    QQuickWindow& window() { return m_window; }
    QQuickItem& root() { return *m_root; }

private:
    /// What the window is cut to, in pixels; empty for the whole of it.
    struct Outline {
        QRectF area;
        double radius = 0;

        bool operator==(const Outline&) const = default;
    };

    void place();
    void orderOut();
    void fadeTo(double opacity);
    void followCompositor();
    void reshape();

    Parts m_parts;
    HUDModel m_model;
    std::unique_ptr<QQuickItem> m_root; ///< outlives the window, which then frees all that was drawn of it
    QQuickWindow m_window;
    std::unique_ptr<OverlayWindow> m_overlay;
    Outline m_outline;
    std::optional<MainActor::TimerId> m_withdrawal;
    QVariantAnimation m_fade;
    Subscription m_compositor;
    Lifetime m_lifetime; ///< fades that end after us do nothing
};

} // namespace talvera
