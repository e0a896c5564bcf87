// SPDX-License-Identifier: MIT
#include "views/hud/QuickHUDPanel.h"

#include "concurrency/MainActor.h"
#include "platform/desktop/OverlayDesktop.h"
#include "views/ViewEngine.h"
#include "views/roundedSpans.h"

#include <QGuiApplication>
#include <QScreen>

#include <cmath>
#include <utility>

namespace talvera {

namespace {

constexpr QSize panelSize(560, 72);
constexpr int bottomOffset = 64;
constexpr QRect fallbackArea(0, 0, 1440, 900);
constexpr Duration fadeDuration = seconds(0.18);

} // namespace

QuickHUDPanel::QuickHUDPanel(const Parts& parts)
    : m_parts(parts)
    , m_model(parts.holder, parts.settings) {
    m_window.setFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus |
                      Qt::WindowStaysOnTopHint);
    m_window.setTitle(QStringLiteral("Talvera"));
    m_window.setColor(Qt::transparent); // also asks for a window that can be translucent
    m_window.setOpacity(0);
    m_window.resize(panelSize);
    m_root = parts.views.create(QStringLiteral("hud/HUDRoot"), {{"model", QVariant::fromValue(&m_model)}});
    m_root->setParentItem(m_window.contentItem());
    m_overlay = parts.desktop.adopt(m_window);

    m_fade.setDuration(int(std::chrono::duration_cast<std::chrono::milliseconds>(fadeDuration).count()));
    QObject::connect(&m_fade, &QVariantAnimation::valueChanged, &m_window,
                     [this](const QVariant& opacity) { m_window.setOpacity(opacity.toDouble()); });
    QObject::connect(&m_window, &QQuickWindow::afterAnimating, &m_window, [this] { reshape(); });
    followCompositor();
    m_compositor = parts.desktop.isComposited.observe([this](const bool&) { followCompositor(); });
}

QuickHUDPanel::~QuickHUDPanel() = default;

void QuickHUDPanel::fadeIn() {
    if (const auto withdrawal = std::exchange(m_withdrawal, std::nullopt))
        m_parts.actor.cancelTimer(*withdrawal);
    place();
    if (!isVisible()) {
        m_root->setProperty("isShown", true);
        reshape();
        m_window.show();
        m_overlay->stayOnTop(true);
    }
    fadeTo(1);
}

void QuickHUDPanel::fadeOut(std::function<void()> completion) {
    fadeTo(0);
    m_parts.actor.startTimer(fadeDuration,
                             [this, owner = m_lifetime.token(), completion = std::move(completion)] {
                                 if (owner.isAlive())
                                     orderOut();
                                 completion();
                             });
}

void QuickHUDPanel::withdraw() {
    if (m_withdrawal)
        return;
    fadeTo(0);
    m_withdrawal = m_parts.actor.startTimer(fadeDuration, m_lifetime.ifAlive([this] {
        m_withdrawal.reset();
        orderOut();
    }));
}

void QuickHUDPanel::setIgnoresMouseEvents(bool ignores) {
    m_overlay->setTakesClicks(!ignores);
}

void QuickHUDPanel::orderOut() {
    m_fade.stop();
    m_overlay->stayOnTop(false);
    m_root->setProperty("isShown", false);
    m_window.hide();
    m_window.setOpacity(0);
}

void QuickHUDPanel::fadeTo(double opacity) {
    m_fade.stop();
    if (!m_parts.desktop.isComposited.get()) { // nothing there is translucent
        m_window.setOpacity(1);
        return;
    }
    m_fade.setStartValue(m_window.opacity());
    m_fade.setEndValue(opacity);
    m_fade.start();
}

void QuickHUDPanel::place() {
    const auto found = m_parts.desktop.workArea();
    auto* const screen = found ? QGuiApplication::screenAt(found->center()) : nullptr;
    m_window.setScreen(screen ? screen : QGuiApplication::primaryScreen());
    const QRectF area(found.value_or(fallbackArea));
    const QPointF place(area.center().x() - panelSize.width() / 2.0,
                        area.bottom() - bottomOffset - panelSize.height());
    m_window.setGeometry(QRect(place.toPoint(), panelSize));
}

void QuickHUDPanel::followCompositor() {
    const bool composited = m_parts.desktop.isComposited.get();
    m_root->setProperty("translucent", composited);
    m_parts.views.setTranslucent(composited);
    m_window.setColor(composited ? QColor(Qt::transparent) : m_root->property("backdrop").value<QColor>());
    if (isVisible())
        fadeTo(1);
    reshape();
}

void QuickHUDPanel::reshape() {
    Outline outline;
    if (!m_parts.desktop.isComposited.get()) {
        const double ratio = m_window.effectiveDevicePixelRatio();
        const auto area = m_root->property("outline").toRectF();
        outline = {QRectF(area.topLeft() * ratio, area.size() * ratio),
                   m_root->property("outlineRadius").toDouble() * ratio};
    }
    if (outline == m_outline) // as in nearly every frame
        return;
    m_outline = outline;
    m_overlay->setShape(roundedSpans(outline.area, outline.radius));
}

} // namespace talvera
