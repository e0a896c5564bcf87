// SPDX-License-Identifier: MIT
#pragma once

#include "shell/onboarding/WizardWindow.h"

#include <memory>

class QQuickItem;
class QQuickWindow;

namespace talvera {

class FramedQuickWindow;
class OnboardingModel;
class PanelDesktop;
class ViewEngine;

/// The wizard on the screen: an ordinary window of the desktop with the desktop's own frame, of one size, and
/// the view in it.
class QuickWizardWindow final : public WizardWindow {
public:
    QuickWizardWindow(ViewEngine& engine, OnboardingModel& model, PanelDesktop& desktop);
    ~QuickWizardWindow() override;
    QuickWizardWindow(const QuickWizardWindow&) = delete;
    QuickWizardWindow& operator=(const QuickWizardWindow&) = delete;

    void bringToFront() override;

    /// For tests and pictures.
    QQuickWindow& window();
    QQuickItem& view() { return *m_view; }

private:
    void followVisibility();

    ViewEngine& m_engine;
    std::unique_ptr<FramedQuickWindow> m_window;
    std::unique_ptr<QQuickItem> m_view;
};

} // namespace talvera
