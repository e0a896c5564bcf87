// SPDX-License-Identifier: MIT
#include "views/onboarding/QuickWizardWindow.h"

#include "shell/onboarding/OnboardingModel.h"
#include "views/FramedQuickWindow.h"
#include "views/ViewEngine.h"

#include <QQuickItem>

#include <algorithm>

namespace talvera {

namespace {

constexpr QSize contentSize(760, 580);
/// What it gets is a multiple of this, which is whole device pixels at every scale in quarters: the toolkit
/// leaves what lies over a part of one black.
constexpr int grid = 4;

/// How much smaller everything has to be for the window to fit on the screen; at most 1.
double fittingScale(const QRect& available) {
    const double wide = static_cast<double>(available.width()) / contentSize.width();
    const double high =
        static_cast<double>(available.height() - FramedQuickWindow::frameRoom) / contentSize.height();
    return std::min({1.0, wide, high});
}

} // namespace

QuickWizardWindow::QuickWizardWindow(ViewEngine& engine, OnboardingModel& model, PanelDesktop& desktop)
    : m_engine(engine)
    , m_window(std::make_unique<FramedQuickWindow>(engine, desktop, model.texts()->windowTitle)) {
    const double scale = fittingScale(FramedQuickWindow::area());
    const QSize size(static_cast<int>(contentSize.width() * scale) / grid * grid,
                     static_cast<int>(contentSize.height() * scale) / grid * grid);
    m_window->setFlags(Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                       Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint);
    m_window->setMinimumSize(size);
    m_window->setMaximumSize(size);
    m_window->centre(size);
    m_window->onClosed = [this] {
        if (onClosed)
            onClosed();
    };
    QObject::connect(m_window.get(), &QWindow::visibilityChanged, m_window.get(),
                     [this] { followVisibility(); });
    m_view = m_engine.create(QStringLiteral("onboarding/OnboardingView"),
                             {{QStringLiteral("wizard"), QVariant::fromValue<QObject*>(&model)},
                              {QStringLiteral("moves"), false}});
    m_view->setSize(QSizeF(size) / scale);
    m_view->setTransformOrigin(QQuickItem::TopLeft);
    m_view->setScale(scale);
    m_view->setParentItem(m_window->contentItem());
}

QuickWizardWindow::~QuickWizardWindow() {
    m_window->onClosed = nullptr;
    m_window->hide();
    m_view.reset();
    m_window.reset();
    m_engine.windowHasGone();
}

QQuickWindow& QuickWizardWindow::window() {
    return *m_window;
}

void QuickWizardWindow::bringToFront() {
    if (m_window->bringToFront())
        QMetaObject::invokeMethod(m_view.get(), "takeKeyboard");
}

/// Nothing moves where nobody can see it.
void QuickWizardWindow::followVisibility() {
    const auto visibility = m_window->visibility();
    m_view->setProperty("moves", visibility != QWindow::Hidden && visibility != QWindow::Minimized);
}

} // namespace talvera
