// SPDX-License-Identifier: MIT
#include "linux/wayland/kwin/KwinWindows.h"

#include "linux/support/applicationId.h"
#include "linux/wayland/kwin/callOfKwin.h"
#include "linux/wayland/kwin/kwinScripts.h"

#include <QCoreApplication>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>

#include <algorithm>
#include <chrono>
#include <set>
#include <utility>

namespace talvera {

namespace {

/// Before a text is pasted; one that isn't stays on the clipboard.
constexpr std::chrono::milliseconds patience(300);
/// Nobody waits for it; what comes later than this isn't wanted any more.
constexpr std::chrono::milliseconds activationPatience(2000);

const auto interface = QStringLiteral("talvera.Windows");

QString scriptName(const QString& what, int number) {
    return QStringLiteral("%1-%2-%3-%4")
        .arg(QString::fromLatin1(applicationId), what)
        .arg(QCoreApplication::applicationPid())
        .arg(number);
}

/// Of each listener of this process, since what a script of an earlier one still tells is not meant for the
/// next.
int newNumber() {
    static int count = 0;
    return ++count;
}

} // namespace

KwinWindowListener::KwinWindowListener(QDBusConnection bus, int number)
    : m_bus(std::move(bus))
    , m_path(QStringLiteral("/talvera/Windows/%1").arg(number))
    , m_windows(m_bus, scriptName(QStringLiteral("windows"), number), this)
    , m_activation(m_bus, scriptName(QStringLiteral("activation"), number), this) {
    m_bus.registerObject(m_path, this, QDBusConnection::ExportScriptableSlots);
}

KwinWindowListener::~KwinWindowListener() {
    m_bus.unregisterObject(m_path);
}

QStringList KwinWindowListener::scripts() const {
    return m_windows.names() + m_activation.names();
}

void KwinWindowListener::listen() {
    forget();
    m_windows.run(KwinScripts::tellOfWindows(m_bus.baseService(), m_path, interface),
                  [this] { return m_hasTold; });
}

/// By what KWin has for the search field of the desktop, whose first action is this. Where that field isn't
/// installed, version 6 hasn't it either.
void KwinWindowListener::activate(const QString& id) {
    const auto run = callOfKwin(QStringLiteral("/WindowsRunner"), QStringLiteral("org.kde.krunner1"),
                                QStringLiteral("Run"), {QStringLiteral("0_") + id, QString()});
    auto* const running =
        new QDBusPendingCallWatcher(m_bus.asyncCall(run, static_cast<int>(activationPatience.count())), this);
    connect(running, &QDBusPendingCallWatcher::finished, this, [this, running, id] {
        running->deleteLater();
        if (running->error().type() == QDBusError::UnknownObject)
            activateByScript(id);
    });
}

void KwinWindowListener::activateByScript(const QString& id) {
    m_activated.clear();
    m_activation.run(KwinScripts::activateWindow(m_bus.baseService(), m_path, interface, id),
                     [this, id] { return m_activated == id; });
}

std::optional<KwinWindow> KwinWindowListener::active() const {
    const std::lock_guard lock(m_mutex);
    return m_active;
}

std::optional<KwinWindow> KwinWindowListener::lastOf(pid_t pid) const {
    const std::lock_guard lock(m_mutex);
    const auto found = std::find_if(m_known.rbegin(), m_known.rend(),
                                    [pid](const KwinWindow& window) { return window.pid == pid; });
    return found == m_known.rend() ? std::nullopt : std::optional(*found);
}

std::vector<pid_t> KwinWindowListener::programs() const {
    const std::lock_guard lock(m_mutex);
    std::set<pid_t> all;
    for (const auto& window : m_known)
        all.insert(window.pid);
    return {all.begin(), all.end()};
}

void KwinWindowListener::Active(const QString& id, const QString& pid, const QString& desktopFile,
                                const QString& windowClass, const QString& name) {
    const KwinWindow window{id, pid.toInt(), {desktopFile, windowClass, name}};
    m_hasTold = true;
    const std::lock_guard lock(m_mutex);
    m_active = window.pid > 0 ? std::optional(window) : std::nullopt;
    if (m_active)
        remember(window);
}

void KwinWindowListener::Window(const QString& id, const QString& pid, const QString& desktopFile,
                                const QString& windowClass, const QString& name) {
    const KwinWindow window{id, pid.toInt(), {desktopFile, windowClass, name}};
    const std::lock_guard lock(m_mutex);
    if (window.pid > 0)
        remember(window);
}

void KwinWindowListener::Activated(const QString& id) {
    m_activated = id;
    m_activation.unload();
}

void KwinWindowListener::forget() {
    m_hasTold = false;
    const std::lock_guard lock(m_mutex);
    m_active.reset();
    m_known.clear();
}

/// Of windows that have gone nobody tells, so the oldest make room.
void KwinWindowListener::remember(const KwinWindow& window) {
    constexpr std::size_t most = 200;
    std::erase(m_known, window);
    m_known.push_back(window);
    if (m_known.size() > most)
        m_known.erase(m_known.begin());
}

KwinWindows::KwinWindows(std::shared_ptr<KwinGuard> guard)
    : m_bus(QDBusConnection::sessionBus())
    , m_listener(std::make_unique<KwinWindowListener>(m_bus, newNumber()))
    , m_kwin(QStringLiteral("org.kde.KWin"), m_bus, QDBusServiceWatcher::WatchForRegistration) {
    guard->guardScripts(m_listener->scripts());
    m_thread.setObjectName(QStringLiteral("kwin-windows"));
    m_listener->moveToThread(&m_thread);
    m_thread.start();
    const auto load = [listener = m_listener.get()] {
        QMetaObject::invokeMethod(
            listener, [listener] { listener->listen(); }, Qt::QueuedConnection);
    };
    QObject::connect(&m_kwin, &QDBusServiceWatcher::serviceRegistered, &m_kwin, load);
    load();
}

KwinWindows::~KwinWindows() {
    m_thread.quit();
    m_thread.wait();
}

/// KWin answers when the script has told all that came before, and what was told is read in that order.
std::optional<KwinWindows::Look> KwinWindows::look() const {
    const auto ask = callOfKwin(QStringLiteral("/KWin"), QStringLiteral("org.kde.KWin"),
                                QStringLiteral("getWindowInfo"), {QString()});
    const auto reply = m_bus.call(ask, QDBus::Block, static_cast<int>(patience.count()));
    if (reply.type() != QDBusMessage::ReplyMessage)
        return std::nullopt;
    QMetaObject::invokeMethod(
        m_listener.get(), [] {}, Qt::BlockingQueuedConnection);
    return Look{m_listener->active()};
}

void KwinWindows::activate(const KwinWindow& window) {
    QMetaObject::invokeMethod(
        m_listener.get(), [listener = m_listener.get(), id = window.id] { listener->activate(id); },
        Qt::QueuedConnection);
}

} // namespace talvera
