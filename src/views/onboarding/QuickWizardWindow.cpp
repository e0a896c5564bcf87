// SPDX-License-Identifier: MIT
#include "views/onboarding/QuickWizardWindow.h"

#include "platform/desktop/PanelDesktop.h"
#include "shell/onboarding/OnboardingModel.h"
#include "views/ViewEngine.h"
#include "views/controls/SymbolProvider.h"

#include <QCloseEvent>
#include <QCursor>
#include <QGuiApplication>
#include <QIcon>
#include <QPixmap>
#include <QQuickItem>
#include <QQuickWindow>
#include <QScreen>

#include <algorithm>

namespace talvera {

namespace {

constexpr QSize contentSize(760, 580);
constexpr int frameRoom = 40; ///< what the desktop's frame takes of the height, at most

QScreen* screenOfTheUser() {
    auto* screen = QGuiApplication::screenAt(QCursor::pos());
    return screen ? screen : QGuiApplication::primaryScreen();
}

/// How much smaller everything has to be for the window to fit on the screen; at most 1.
double fittingScale(const QRect& available) {
    const double wide = static_cast<double>(available.width()) / contentSize.width();
    const double high = static_cast<double>(available.height() - frameRoom) / contentSize.height();
    return std::min({1.0, wide, high});
}

QIcon windowIcon(const QColor& color) {
    QIcon icon;
    for (const int pixels : {16, 32, 48, 64})
        icon.addPixmap(
            QPixmap::fromImage(symbolImage(QStringLiteral("waveform.badge.microphone"), color, pixels)));
    return icon;
}

} // namespace

/// Tells when it has come on screen and when the user closes it.
class QuickWizardWindow::Frame final : public QQuickWindow {
public:
    std::function<void()> onShown;
    std::function<void()> onClosed;

protected:
    bool event(QEvent* event) override {
        if (event->type() != QEvent::Close)
            return QQuickWindow::event(event);
        event->accept();
        if (onClosed)
            onClosed();
        return true;
    }

    void exposeEvent(QExposeEvent* event) override {
        QQuickWindow::exposeEvent(event);
        if (isExposed() && !std::exchange(m_shown, true) && onShown)
            onShown();
    }

private:
    bool m_shown = false;
};

QuickWizardWindow::QuickWizardWindow(ViewEngine& engine, OnboardingModel& model, PanelDesktop& desktop)
    : m_engine(engine)
    , m_desktop(desktop)
    , m_window(std::make_unique<Frame>()) {
    const auto area = screenOfTheUser()->availableGeometry();
    const double scale = fittingScale(area);
    const auto size = (QSizeF(contentSize) * scale).toSize();
    m_window->setFlags(Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                       Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint);
    m_window->setTitle(model.texts()->windowTitle);
    m_window->setIcon(windowIcon(m_engine.theme().property("accent").value<QColor>()));
    m_window->setColor(m_engine.theme().property("window").value<QColor>());
    m_window->setMinimumSize(size);
    m_window->setMaximumSize(size);
    m_window->setGeometry(
        QRect(area.center() - QPoint(size.width(), size.height() + frameRoom) / 2 + QPoint(0, frameRoom / 2),
              size));
    m_window->onShown = [this] { m_desktop.activate(*m_window); };
    m_window->onClosed = [this] {
        if (onClosed)
            onClosed();
    };
    QObject::connect(m_window.get(), &QWindow::visibilityChanged, m_window.get(),
                     [this] { followVisibility(); });
    m_view = m_engine.create(QStringLiteral("onboarding/OnboardingView"),
                             {{QStringLiteral("wizard"), QVariant::fromValue<QObject*>(&model)},
                              {QStringLiteral("moves"), false}});
    m_view->setSize(contentSize);
    m_view->setTransformOrigin(QQuickItem::TopLeft);
    m_view->setScale(scale);
    m_view->setParentItem(m_window->contentItem());
}

/// What the view took goes back to the system with it.
QuickWizardWindow::~QuickWizardWindow() {
    m_window->onClosed = nullptr;
    m_window->hide();
    m_view.reset();
    m_window.reset();
    m_engine.giveBackMemory();
}

QQuickWindow& QuickWizardWindow::window() {
    return *m_window;
}

void QuickWizardWindow::bringToFront() {
    if (!m_window->isVisible()) {
        m_window->show();
        QMetaObject::invokeMethod(m_view.get(), "takeKeyboard");
        return;
    }
    if (m_window->windowStates() & Qt::WindowMinimized)
        m_window->showNormal();
    m_window->raise();
    m_desktop.activate(*m_window);
}

/// Nothing moves where nobody can see it.
void QuickWizardWindow::followVisibility() {
    const auto visibility = m_window->visibility();
    m_view->setProperty("moves", visibility != QWindow::Hidden && visibility != QWindow::Minimized);
}

} // namespace talvera
