// SPDX-License-Identifier: MIT
#include "linux/wayland/kwin/KwinWindows.h"

#include "linux/support/applicationId.h"
#include "linux/wayland/kwin/kwinScripts.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDir>
#include <QTemporaryFile>

#include <algorithm>
#include <chrono>
#include <set>
#include <utility>

namespace talvera {

namespace {

const auto service = QStringLiteral("org.kde.KWin");
const auto scripting = QStringLiteral("/Scripting");

/// Before a text is pasted; one that isn't stays on the clipboard.
constexpr std::chrono::milliseconds patience(300);
/// Nobody waits for these.
constexpr std::chrono::milliseconds scriptPatience(10'000);

QDBusMessage callOf(const QString& path, const QString& interface, const QString& method,
                    const QVariantList& arguments) {
    auto call = QDBusMessage::createMethodCall(service, path, interface, method);
    call.setAutoStartService(false);
    call.setArguments(arguments);
    return call;
}

QDBusMessage scriptingCall(const QString& method, const QVariantList& arguments) {
    return callOf(scripting, QStringLiteral("org.kde.kwin.Scripting"), method, arguments);
}

/// Of each listener of this process, since what a script of an earlier one still tells is not meant for the
/// next.
int newNumber() {
    static int count = 0;
    return ++count;
}

QString runtimeDirectory() {
    const auto directory = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return directory.isEmpty() ? QDir::tempPath() : directory;
}

/// A file that is there until the last who needs it has gone.
std::shared_ptr<QTemporaryFile> fileWith(const QByteArray& text) {
    auto file = std::make_shared<QTemporaryFile>(runtimeDirectory() + QStringLiteral("/talvera-XXXXXX.js"));
    if (!file->open() || file->write(text) != text.size() || !file->flush())
        return nullptr;
    return file;
}

} // namespace

KwinWindowListener::KwinWindowListener(QDBusConnection bus, int number)
    : m_bus(std::move(bus))
    , m_path(QStringLiteral("/talvera/Windows/%1").arg(number))
    , m_script(QStringLiteral("%1-windows-%2-%3")
                   .arg(QString::fromLatin1(applicationId))
                   .arg(QCoreApplication::applicationPid())
                   .arg(number)) {
    m_bus.registerObject(m_path, this, QDBusConnection::ExportScriptableSlots);
}

KwinWindowListener::~KwinWindowListener() {
    m_bus.unregisterObject(m_path);
    for (const auto& name : scripts())
        m_bus.send(scriptingCall(QStringLiteral("unloadScript"), {name}));
}

QStringList KwinWindowListener::scripts() const {
    constexpr int most = 8;
    QStringList names;
    for (int i = 1; i <= most; ++i)
        names << QStringLiteral("%1-%2").arg(m_script).arg(i);
    return names;
}

void KwinWindowListener::loadScript() {
    forget();
    load(scripts());
}

/// KWin numbers its scripts by how many there are. When another has been unloaded, ours gets a number that is
/// in use, and what is run is not ours: then nothing has been told, and the next one gets a number of its
/// own. The file is read when the script is run, and not when it is loaded.
void KwinWindowListener::load(QStringList names) {
    const auto file =
        fileWith(KwinScripts::tellOfWindows(m_bus.baseService(), m_path, QStringLiteral("talvera.Windows")));
    if (!file || names.isEmpty())
        return;
    const auto limit = static_cast<int>(scriptPatience.count());
    const auto name = names.takeFirst();
    auto* const loading = new QDBusPendingCallWatcher(
        m_bus.asyncCall(scriptingCall(QStringLiteral("loadScript"), {file->fileName(), name}), limit), this);
    connect(loading, &QDBusPendingCallWatcher::finished, this, [this, loading, file, names, limit] {
        loading->deleteLater();
        const auto answer = loading->reply().arguments();
        const int number = loading->isError() || answer.isEmpty() ? -1 : answer.constFirst().toInt();
        if (number < 0)
            return;
        const auto pending = std::make_shared<int>(2);
        for (const auto* path : {"/%1", "/Scripting/Script%1"}) { // of version 5 and of 6
            const auto run = callOf(QString::fromLatin1(path).arg(number),
                                    QStringLiteral("org.kde.kwin.Script"), QStringLiteral("run"), {});
            auto* const running = new QDBusPendingCallWatcher(m_bus.asyncCall(run, limit), this);
            connect(running, &QDBusPendingCallWatcher::finished, this, [this, running, pending, file, names] {
                running->deleteLater();
                if (--*pending == 0 && !m_hasTold)
                    load(names);
            });
        }
    });
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
    , m_kwin(service, m_bus, QDBusServiceWatcher::WatchForRegistration) {
    guard->guardScripts(m_listener->scripts());
    m_thread.setObjectName(QStringLiteral("kwin-windows"));
    m_listener->moveToThread(&m_thread);
    m_thread.start();
    const auto load = [listener = m_listener.get()] {
        QMetaObject::invokeMethod(
            listener, [listener] { listener->loadScript(); }, Qt::QueuedConnection);
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
    const auto ask = callOf(QStringLiteral("/KWin"), service, QStringLiteral("getWindowInfo"), {QString()});
    const auto reply = m_bus.call(ask, QDBus::Block, static_cast<int>(patience.count()));
    if (reply.type() != QDBusMessage::ReplyMessage)
        return std::nullopt;
    QMetaObject::invokeMethod(
        m_listener.get(), [] {}, Qt::BlockingQueuedConnection);
    return Look{m_listener->active()};
}

/// By what KWin has for the search field of the desktop, whose first action is this.
void KwinWindows::activate(const KwinWindow& window) {
    m_bus.send(callOf(QStringLiteral("/WindowsRunner"), QStringLiteral("org.kde.krunner1"),
                      QStringLiteral("Run"), {QStringLiteral("0_") + window.id, QString()}));
}

} // namespace talvera
