// SPDX-License-Identifier: MIT
#pragma once

#include "shell/panel/MenuPanelWindow.h"

#include <QVariantAnimation>

#include <memory>

class QQuickItem;
class QScreen;

namespace talvera {

class KeyablePanel;
class MenuPanelModel;
class PanelDesktop;
class ViewEngine;

/// The status panel on the screen: a window without a frame, and the view in it.
class QuickMenuPanel final : public MenuPanelWindow {
public:
    /// Makes ready what every panel is made of, before there is one.
    static void prepare(ViewEngine& engine);

    QuickMenuPanel(ViewEngine& engine, MenuPanelModel& model, PanelDesktop& desktop);
    ~QuickMenuPanel() override;
    QuickMenuPanel(const QuickMenuPanel&) = delete;
    QuickMenuPanel& operator=(const QuickMenuPanel&) = delete;

    bool isVisible() const override;
    void renewContent() override;
    int fittingHeight() const override;
    ScreenArea screenOf(const std::optional<QRect>& item) const override;
    void fadeIn(const QRect& frame) override;
    void fadeOut() override;
    void setFrame(const QRect& frame) override;
    /// Without the shadow.
    QRect frame() const override;

    /// For tests and pictures. It is another one once the panel has been closed.
    KeyablePanel& window() { return *m_panel; }

private:
    void makeWindow();
    bool closeWhatIsOpen();
    void place(const QRect& frame);
    void settle();
    void shape();
    void fadeTo(qreal opacity, int milliseconds);
    void faded();

    ViewEngine& m_engine;
    MenuPanelModel& m_model;
    PanelDesktop& m_desktop;
    std::unique_ptr<KeyablePanel> m_panel;
    std::unique_ptr<QQuickItem> m_view;
    QVariantAnimation m_fade;
    QRect m_frame;             ///< where the panel was put last
    QMargins m_shadow;         ///< what the window has around the panel
    bool m_composited = false; ///< when the content was made
    bool m_closing = false;
};

} // namespace talvera
