// SPDX-License-Identifier: MIT
#include "views/panel/QuickMenuPanel.h"

#include "platform/desktop/PanelDesktop.h"
#include "shell/panel/MenuPanelModel.h"
#include "views/ViewEngine.h"
#include "views/controls/Plane.h"
#include "views/controls/Shadow.h"
#include "views/panel/KeyablePanel.h"
#include "views/roundedSpans.h"

#include <QCursor>
#include <QGuiApplication>
#include <QQuickItem>
#include <QScreen>

namespace talvera {

namespace {

const auto content = QStringLiteral("panel/MenuPanelView");
constexpr int fadeInTime = 120;
constexpr int fadeOutTime = 100;

/// Positioners wait for the next frame, and we want to know the size before there is one.
void layOut(QQuickItem& item) {
    for (auto* child : item.childItems())
        layOut(*child);
    item.ensurePolished();
}

} // namespace

void QuickMenuPanel::prepare(ViewEngine& engine) {
    engine.prepare(content);
}

QuickMenuPanel::QuickMenuPanel(ViewEngine& engine, MenuPanelModel& model, PanelDesktop& desktop)
    : m_engine(engine)
    , m_model(model)
    , m_desktop(desktop) {
    makeWindow();
    QObject::connect(&m_fade, &QVariantAnimation::valueChanged, &m_fade,
                     [this](const QVariant& opacity) { m_panel->setOpacity(opacity.toReal()); });
    // Without a compositor it ends as it begins, and what has closed the panel may be a row of its content.
    QObject::connect(
        &m_fade, &QVariantAnimation::finished, &m_fade, [this] { faded(); }, Qt::QueuedConnection);
}

QuickMenuPanel::~QuickMenuPanel() {
    m_view.reset();
}

void QuickMenuPanel::makeWindow() {
    m_panel = std::make_unique<KeyablePanel>();
    m_panel->onKeyDown = [this](Qt::Key key) {
        return (key == Qt::Key_Escape && closeWhatIsOpen()) || (onKeyDown && onKeyDown(key));
    };
    m_panel->onResignKey = [this] {
        if (onResignKey)
            onResignKey();
    };
    m_panel->onContentChanged = [this] {
        if (m_view && !m_closing && onFittingHeightChanged)
            onFittingHeightChanged();
    };
    m_panel->onShown = [this] {
        settle();
        m_desktop.activate(*m_panel);
    };
}

bool QuickMenuPanel::isVisible() const {
    return m_panel->isVisible();
}

QRect QuickMenuPanel::frame() const {
    return m_panel->geometry().marginsRemoved(m_shadow);
}

void QuickMenuPanel::renewContent() {
    m_composited = m_desktop.isComposited();
    m_engine.setTranslucent(m_composited);
    m_panel->setColor(m_composited ? QColor(Qt::transparent)
                                   : m_engine.theme().property("overlayOpaque").value<QColor>());
    m_view.reset();
    m_view = m_engine.create(content, {{QStringLiteral("panel"), QVariant::fromValue<QObject*>(&m_model)}});
    m_view->setWidth(menuPanelWidth);
    // Its layout is under way when it tells.
    QObject::connect(m_view.get(), SIGNAL(fittingHeightChanged()), m_panel.get(), SLOT(contentChanged()),
                     Qt::QueuedConnection);
    m_view->setParentItem(m_panel->contentItem());
}

int QuickMenuPanel::fittingHeight() const {
    layOut(*m_view);
    return m_view->property("fittingHeight").toInt();
}

ScreenArea QuickMenuPanel::screenOf(const std::optional<QRect>& item) const {
    const auto place = item ? item->center() : QCursor::pos();
    const auto* screen = QGuiApplication::screenAt(place);
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    return screen ? ScreenArea{screen->geometry(), screen->availableGeometry()} : ScreenArea{};
}

void QuickMenuPanel::fadeIn(const QRect& frame) {
    m_closing = false;
    place(frame);
    m_view->forceActiveFocus(Qt::OtherFocusReason);
    if (m_panel->isVisible()) { // again, or during its fade out
        m_desktop.activate(*m_panel);
    } else {
        m_desktop.adopt(*m_panel);
        m_panel->setOpacity(0);
    }
    shape();
    m_panel->show();
    m_panel->raise();
    fadeTo(1, fadeInTime);
}

void QuickMenuPanel::setFrame(const QRect& frame) {
    place(frame);
    settle();
}

/// The window is larger than the panel by its shadow, which ends where the desktop's own panels begin: window
/// managers would push it away from there.
void QuickMenuPanel::place(const QRect& frame) {
    m_frame = frame;
    m_shadow = {};
    if (m_composited) {
        const auto around = frame.marginsAdded({Shadow::reach, Shadow::reach, Shadow::reach, Shadow::reach});
        const auto room = screenOf(frame).visible | frame;
        const auto whole = around & room;
        m_shadow = {frame.left() - whole.left(), frame.top() - whole.top(), whole.right() - frame.right(),
                    whole.bottom() - frame.bottom()};
    }
    m_view->setPosition(QPointF(m_shadow.left(), m_shadow.top()));
    m_view->setSize(frame.size());
    m_panel->setGeometry(frame.marginsAdded(m_shadow));
}

/// A list that floats over the content closes before the panel does.
bool QuickMenuPanel::closeWhatIsOpen() {
    QVariant closed;
    if (m_view)
        QMetaObject::invokeMethod(m_view.get(), "closeWhatIsOpen", Q_RETURN_ARG(QVariant, closed));
    return closed.toBool();
}

void QuickMenuPanel::fadeOut() {
    m_closing = true;
    fadeTo(0, fadeOutTime);
}

/// What a window manager heeds only of a window that it has put on screen.
void QuickMenuPanel::settle() {
    if (!m_view)
        return;
    shape();
    const auto size = QSizeF(m_frame.marginsAdded(m_shadow).size()) * m_panel->effectiveDevicePixelRatio();
    m_desktop.setSize(*m_panel, size.toSize());
}

/// Round corners are cut out where nothing is translucent. Else they are soft, and the shadow is around them.
void QuickMenuPanel::shape() {
    const double ratio = m_panel->effectiveDevicePixelRatio();
    const double radius = m_engine.theme().property("radius").toDouble() * ratio;
    const auto spans = roundedSpans(wholePixels(QRectF(m_view->position(), m_view->size()), ratio), radius);
    m_desktop.setShape(*m_panel, m_composited ? std::vector<QRect>() : spans);
    m_desktop.setShadow(*m_panel, (QMarginsF(m_shadow) * ratio).toMargins(), spans);
}

void QuickMenuPanel::fadeTo(qreal opacity, int milliseconds) {
    m_fade.stop();
    m_fade.setStartValue(m_panel->opacity());
    m_fade.setEndValue(opacity);
    m_fade.setDuration(m_composited ? milliseconds : 0);
    m_fade.start();
}

/// The content is made anew when it is needed again: until then it gives its memory back. So does the
/// window with its pictures: one that is merely hidden keeps them, and counts as having the keyboard for a
/// while, and if it is shown again meanwhile we don't hear of its losing it.
void QuickMenuPanel::faded() {
    if (!m_closing || m_fade.state() == QVariantAnimation::Running)
        return;
    m_panel->hide();
    m_view.reset();
    makeWindow();
    m_engine.giveBackFreed();
}

} // namespace talvera
