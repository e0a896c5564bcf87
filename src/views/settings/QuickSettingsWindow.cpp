// SPDX-License-Identifier: MIT
#include "views/settings/QuickSettingsWindow.h"

#include "shell/settings/SettingsModel.h"
#include "views/FramedQuickWindow.h"
#include "views/ViewEngine.h"

#include <QQuickItem>

namespace talvera {

namespace {

constexpr QSize wantedSize(840, 640);
constexpr QSize leastSize(560, 360);

} // namespace

QuickSettingsWindow::QuickSettingsWindow(ViewEngine& engine, SettingsModel& model, PanelDesktop& desktop)
    : m_engine(engine)
    , m_window(std::make_unique<FramedQuickWindow>(engine, desktop, model.windowTitle())) {
    const auto room = FramedQuickWindow::area().size() - QSize(0, FramedQuickWindow::frameRoom);
    m_window->setMinimumSize(leastSize.boundedTo(room));
    m_window->centre(wantedSize.boundedTo(room));
    m_window->onClosed = [this] {
        if (onClosed)
            onClosed();
    };
    m_view = m_engine.create(QStringLiteral("settings/SettingsWindowView"),
                             {{QStringLiteral("settings"), QVariant::fromValue<QObject*>(&model)}});
    m_view->setParentItem(m_window->contentItem());
    const auto fit = [this] { m_view->setSize(m_window->size()); };
    QObject::connect(m_window.get(), &QWindow::widthChanged, m_view.get(), fit);
    QObject::connect(m_window.get(), &QWindow::heightChanged, m_view.get(), fit);
    fit();
}

QuickSettingsWindow::~QuickSettingsWindow() {
    m_window->onClosed = nullptr;
    m_window->hide();
    m_view.reset();
    m_window.reset();
    m_engine.windowHasGone();
}

void QuickSettingsWindow::bringToFront() {
    if (m_window->bringToFront())
        QMetaObject::invokeMethod(m_view.get(), "takeKeyboard");
}

QQuickWindow& QuickSettingsWindow::window() {
    return *m_window;
}

} // namespace talvera
