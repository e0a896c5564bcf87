// SPDX-License-Identifier: MIT
#include "linux/wayland/kwin/KwinShortcuts.h"

#include "linux/support/applicationId.h"

#include <QDBusArgument>
#include <QList>
#include <QStringList>

#include <algorithm>
#include <chrono>
#include <utility>

namespace talvera {

namespace {

const auto service = QStringLiteral("org.kde.kglobalaccel");
const auto path = QStringLiteral("/kglobalaccel");
const auto interface = QStringLiteral("org.kde.KGlobalAccel");
const auto component = QString::fromLatin1(applicationId);

/// What the user hangs the hotkey on, and not longer than they would bear a hung settings window.
constexpr std::chrono::milliseconds patience(500);

/// That it is there, and that it is this and not what was kept from another time.
constexpr uint howToSet = 2 | 4;

/// The component and the action, first by their names and then as the user reads them.
QStringList idOf(const QString& action) {
    return {component, action, QStringLiteral("Talvera"), QStringLiteral("Talvera")};
}

QDBusMessage callOf(const QString& method, const QVariantList& arguments) {
    auto call = QDBusMessage::createMethodCall(service, path, interface, method);
    call.setAutoStartService(false);
    call.setArguments(arguments);
    return call;
}

bool hasKey(const QList<int>& keys) {
    return std::ranges::any_of(keys, [](int key) { return key != 0; });
}

/// Shortcuts of several keys one after the other, each in a structure of its own.
bool hasKey(const QDBusArgument& sequences) {
    bool isThere = false;
    for (sequences.beginArray(); !sequences.atEnd();) {
        QList<int> keys;
        sequences.beginStructure();
        sequences >> keys;
        sequences.endStructure();
        isThere = isThere || hasKey(keys);
    }
    sequences.endArray();
    return isThere;
}

} // namespace

KwinShortcuts::KwinShortcuts(std::shared_ptr<KwinGuard> guard, Listener listener)
    : m_bus(QDBusConnection::sessionBus())
    , m_server(service, m_bus, QDBusServiceWatcher::WatchForRegistration)
    , m_guard(std::move(guard))
    , m_listener(std::move(listener)) {
    const auto ofComponent = QStringLiteral("/component/") + component;
    const auto toldBy = QStringLiteral("org.kde.kglobalaccel.Component");
    m_bus.connect(service, ofComponent, toldBy, QStringLiteral("globalShortcutPressed"), this,
                  SLOT(hearPress(QString, QString, qlonglong)));
    m_bus.connect(service, ofComponent, toldBy, QStringLiteral("globalShortcutReleased"), this,
                  SLOT(hearRelease(QString, QString, qlonglong)));
    m_bus.connect(service, path, interface, QStringLiteral("yourShortcutsChanged"), this,
                  SLOT(hearChange(QDBusMessage)));
    connect(&m_server, &QDBusServiceWatcher::serviceRegistered, this, [this] { startOver(); });
}

KwinShortcuts::~KwinShortcuts() {
    for (const auto& [action, shortcut] : std::exchange(m_added, {}))
        m_bus.send(callOf(QStringLiteral("unregister"), {component, action}));
}

KwinShortcuts::Answer KwinShortcuts::add(const QString& action, int shortcut) {
    m_added[action] = shortcut;
    guard();
    m_bus.send(callOf(QStringLiteral("doRegister"), {idOf(action)}));
    const auto call = callOf(QStringLiteral("setShortcut"),
                             {idOf(action), QVariant::fromValue(QList<int>{shortcut}), howToSet});
    const auto reply = m_bus.call(call, QDBus::Block, static_cast<int>(patience.count()));
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return Answer::None;
    if (hasKey(qdbus_cast<QList<int>>(reply.arguments().constFirst())))
        return Answer::Registered;
    remove(action);
    return Answer::Taken;
}

void KwinShortcuts::remove(const QString& action) {
    if (m_added.erase(action) == 0)
        return;
    m_bus.send(callOf(QStringLiteral("unregister"), {component, action}));
    guard();
}

void KwinShortcuts::hearPress(const QString& ofComponent, const QString& action, qlonglong) {
    if (ofComponent == component && m_added.contains(action))
        m_listener.pressed(action);
}

void KwinShortcuts::hearRelease(const QString& ofComponent, const QString& action, qlonglong) {
    if (ofComponent == component && m_added.contains(action))
        m_listener.released(action);
}

void KwinShortcuts::hearChange(const QDBusMessage& message) {
    const auto arguments = message.arguments();
    if (arguments.size() < 2)
        return;
    const auto id = arguments.at(0).toStringList();
    if (id.size() < 2 || id.at(0) != component || !m_added.contains(id.at(1)))
        return;
    m_listener.changed(id.at(1), hasKey(arguments.at(1).value<QDBusArgument>()));
}

void KwinShortcuts::guard() {
    QStringList actions;
    for (const auto& [action, shortcut] : m_added)
        actions << action;
    m_guard->guardShortcuts(actions);
}

/// A KWin that has just come knows of none of them. Nothing waits for it: it has much else to do then.
void KwinShortcuts::startOver() {
    for (const auto& [action, shortcut] : m_added) {
        m_bus.send(callOf(QStringLiteral("doRegister"), {idOf(action)}));
        m_bus.send(callOf(QStringLiteral("setShortcut"),
                          {idOf(action), QVariant::fromValue(QList<int>{shortcut}), howToSet}));
    }
    m_listener.restarted();
}

} // namespace talvera
