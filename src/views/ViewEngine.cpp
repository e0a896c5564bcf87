// SPDX-License-Identifier: MIT
#include "views/ViewEngine.h"

#include "platform/desktop/DesktopAppearance.h"
#include "views/controls/SymbolProvider.h"

#include <QFontInfo>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQuickItem>
#include <QQuickWindow>

#include <malloc.h>

namespace talvera {

namespace {

/// Inter where it is installed, since the layouts were drawn with it; else the desktop's own font.
QString interfaceFont() {
    const auto preferred = QStringLiteral("Inter");
    return QFontInfo(QFont(preferred)).family() == preferred ? preferred : QGuiApplication::font().family();
}

QUrl sourceOf(const QString& view) {
    return {QStringLiteral("qrc:/qt/qml/Talvera/%1.qml").arg(view)};
}

/// The engine makes the theme when a view first names it, and owns it.
QObject* makeTheme(QQmlEngine& engine) {
    QQmlComponent component(&engine);
    component.setData("import Talvera\nimport QtQml\nQtObject { property QtObject theme: Theme }", {});
    const std::unique_ptr<QObject> holder(component.create());
    if (!holder)
        qFatal("the theme can't be made: %s", qPrintable(component.errorString()));
    return holder->property("theme").value<QObject*>();
}

} // namespace

void ViewEngine::prepareProcess() {
    // Our windows are small: drawn in software they cost a quarter of the memory and start sooner.
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    // Qt draws 5 ms after it was asked to; at once costs a wake-up less, which shows while the meter moves.
    qputenv("QT_QPA_UPDATE_IDLE_TIME", "0");
    // Each thread would get a heap of its own and keep what it once needed, some megabytes for QML and for a
    // download.
    ::mallopt(M_ARENA_MAX, 1);
    // Qt looks once, at the start, whether a program wants accessibility, and screen readers may start later.
    qputenv("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1");
}

ViewEngine::ViewEngine(DesktopAppearance& appearance) {
    m_engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    m_engine.addImageProvider(QStringLiteral("symbol"), new SymbolProvider);
    m_theme = makeTheme(m_engine);
    m_theme->setProperty("fontFamily", interfaceFont());
    m_theme->setProperty("dark", appearance.isDark.get());
    m_appearance =
        appearance.isDark.observe([this](const bool& dark) { m_theme->setProperty("dark", dark); });
}

ViewEngine::~ViewEngine() = default;

void ViewEngine::setTranslucent(bool translucent) {
    m_theme->setProperty("translucent", translucent);
}

void ViewEngine::prepare(const QString& name) {
    auto* const view = new QQmlComponent(&m_engine, &m_engine);
    QObject::connect(view, &QQmlComponent::statusChanged, view, [this, view] {
        if (!view->isLoading())
            giveBackFreed();
    });
    view->loadUrl(sourceOf(name), QQmlComponent::Asynchronous);
}

std::unique_ptr<QQuickItem> ViewEngine::create(const QString& name, const QVariantMap& properties) {
    QQmlComponent component(&m_engine, sourceOf(name));
    // Asked first: in Qt 6.4 a component with a mistake crashes when it is to be made.
    std::unique_ptr<QObject> object(component.isReady() ? component.createWithInitialProperties(properties)
                                                        : nullptr);
    auto* item = qobject_cast<QQuickItem*>(object.get());
    if (!item)
        qFatal("the view %s can't be made: %s", qPrintable(name), qPrintable(component.errorString()));
    object.release();
    return std::unique_ptr<QQuickItem>(item);
}

void ViewEngine::giveBackFreed() {
    m_engine.collectGarbage();
    malloc_trim(0);
    if (onMemoryGivenBack)
        onMemoryGivenBack();
}

void ViewEngine::giveBackMemory() {
    m_engine.collectGarbage();
    m_engine.trimComponentCache();
    m_engine.collectGarbage();
    m_engine.trimComponentCache(); // of what the first round has set free
    giveBackFreed();
}

void ViewEngine::windowHasGone() {
    if (onWindowGone)
        onWindowGone();
}

} // namespace talvera
