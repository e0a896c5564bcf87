// SPDX-License-Identifier: MIT
#include "linux/wayland/gnome/ShellView.h"

#include <QDBusArgument>
#include <QDBusServiceWatcher>

#include <algorithm>
#include <utility>

namespace talvera {

namespace {

// The bus itself tells who is there, and that at once.
constexpr std::chrono::seconds ownersPatience{1};

std::vector<ShellWindow> windowsOf(const QVariant& told) {
    std::vector<ShellWindow> windows;
    if (!told.canConvert<QDBusArgument>())
        return windows;
    const auto array = told.value<QDBusArgument>();
    if (array.currentSignature() != QStringLiteral("a(tisb)"))
        return windows;
    array.beginArray();
    while (!array.atEnd()) {
        qulonglong number = 0;
        int process = 0;
        QString application;
        bool hasFocus = false;
        array.beginStructure();
        array >> number >> process >> application >> hasFocus;
        array.endStructure();
        windows.push_back({number, process, application});
    }
    array.endArray();
    return windows;
}

} // namespace

ShellView::ShellView(std::shared_ptr<const ShellBus> bus)
    : m_bus(std::move(bus)) {
    moveToThread(&m_thread);
    m_thread.setObjectName(QStringLiteral("gnome shell"));
    m_thread.start();
    QMetaObject::invokeMethod(this, &ShellView::listen, Qt::QueuedConnection);
    std::unique_lock lock(m_mutex);
    m_known.wait_for(lock, ownersPatience, [this] { return m_ownersKnown >= 2; });
}

ShellView::~ShellView() {
    m_thread.quit();
    m_thread.wait();
}

ShellView::Presence ShellView::presence() const {
    const std::scoped_lock lock(m_mutex);
    if (m_hasExtension)
        return Presence::Working;
    if (!m_hasShell)
        return Presence::NoShell;
    return m_isExtensionUnknown ? Presence::UnknownToIt : Presence::Off;
}

ShellFocus ShellView::focus() const {
    const std::scoped_lock lock(m_mutex);
    return m_focus;
}

ShellView::Clock::time_point ShellView::focusedSince() const {
    const std::scoped_lock lock(m_mutex);
    return m_since;
}

std::vector<ShellWindow> ShellView::windows() const {
    const std::scoped_lock lock(m_mutex);
    return m_windows;
}

void ShellView::listen() {
    auto* const watcher = new QDBusServiceWatcher(this);
    watcher->setConnection(m_bus->connection());
    watcher->setWatchMode(QDBusServiceWatcher::WatchForOwnerChange);
    connect(
        watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
        [this](const QString& service, const QString&, const QString& owner) { ownerIs(service, owner); });
    auto connection = m_bus->connection();
    connection.connect(ShellBus::extensionService, ShellBus::extensionPath, ShellBus::extensionInterface,
                       QStringLiteral("FocusChanged"), this,
                       SLOT(focusChanged(qulonglong, int, QString, bool)));
    for (const auto& service : {ShellBus::shellService, ShellBus::extensionService}) {
        watcher->addWatchedService(service);
        askForOwner(service);
    }
}

void ShellView::askForOwner(const QString& service) {
    m_bus->askLater(ShellBus::ownerOf(service), *this, [this, service](const QVariantList* answer) {
        ownerIs(service, answer ? answer->value(0).toString() : QString());
        const std::scoped_lock lock(m_mutex);
        ++m_ownersKnown;
        m_known.notify_all();
    });
}

void ShellView::ownerIs(const QString& service, const QString& owner) {
    const bool isExtension = service == ShellBus::extensionService;
    bool wasThere = false;
    {
        const std::scoped_lock lock(m_mutex);
        auto& isThere = isExtension ? m_hasExtension : m_hasShell;
        wasThere = std::exchange(isThere, !owner.isEmpty());
    }
    if (isExtension && (wasThere || !owner.isEmpty())) {
        ++m_extension;
        m_isFocusTold = m_areWindowsAsked = m_mustAskAgain = false;
        setFocus({});
        if (wasThere)
            Q_EMIT extensionWent();
        if (!owner.isEmpty()) {
            askForFocus();
            askForWindows();
            Q_EMIT extensionCame();
        }
    }
    if (!isExtension && !owner.isEmpty())
        askAboutExtension(QStringLiteral("GetExtensionInfo"));
}

void ShellView::switchExtensionOn() {
    QMetaObject::invokeMethod(this, [this] { askAboutExtension(QStringLiteral("EnableExtension")); });
}

/// The answer is empty or false where the Shell knows no such extension.
void ShellView::askAboutExtension(const QString& method) {
    auto question = QDBusMessage::createMethodCall(ShellBus::shellService, QStringLiteral("/org/gnome/Shell"),
                                                   QStringLiteral("org.gnome.Shell.Extensions"), method);
    question << QStringLiteral("talvera@home.arpa");
    m_bus->askLater(question, *this, [this](const QVariantList* answer) {
        if (!answer)
            return;
        const auto told = answer->value(0);
        const bool isKnown = told.canConvert<QDBusArgument>()
                                 ? !qdbus_cast<QVariantMap>(told.value<QDBusArgument>()).isEmpty()
                                 : told.toBool();
        const std::scoped_lock lock(m_mutex);
        m_isExtensionUnknown = !isKnown;
    });
}

void ShellView::askForFocus() {
    m_bus->askLater(QStringLiteral("Focus"), {}, *this,
                    [this, asked = m_extension](const QVariantList* answer) {
                        if (answer && answer->size() == 4 && asked == m_extension && !m_isFocusTold)
                            setFocus({.window = answer->at(0).toULongLong(),
                                      .process = answer->at(1).toInt(),
                                      .application = answer->at(2).toString(),
                                      .takesText = answer->at(3).toBool()});
                    });
}

void ShellView::focusChanged(qulonglong window, int process, const QString& application, bool takesText) {
    m_isFocusTold = true;
    setFocus({.window = window, .process = process, .application = application, .takesText = takesText});
}

/// Windows come and go with the focus, as far as it matters which there are.
void ShellView::setFocus(const ShellFocus& focus) {
    {
        const std::scoped_lock lock(m_mutex);
        const auto before = std::exchange(m_focus, focus);
        if (before.window == focus.window)
            return;
        m_since = Clock::now();
        const bool isKnown = focus.window == 0 || std::ranges::find(m_windows, focus.window,
                                                                    &ShellWindow::number) != m_windows.end();
        if (!isKnown)
            m_windows.insert(m_windows.begin(), {focus.window, focus.process, focus.application});
    }
    if (m_isFocusTold)
        askForWindows();
    Q_EMIT focusMoved();
}

void ShellView::askForWindows() {
    if (m_areWindowsAsked) {
        m_mustAskAgain = true;
        return;
    }
    m_areWindowsAsked = true;
    m_bus->askLater(QStringLiteral("Windows"), {}, *this,
                    [this, asked = m_extension](const QVariantList* answer) {
                        if (asked != m_extension)
                            return;
                        m_areWindowsAsked = false;
                        if (answer) {
                            auto told = windowsOf(answer->value(0));
                            const std::scoped_lock lock(m_mutex);
                            m_windows = std::move(told);
                        }
                        if (std::exchange(m_mustAskAgain, false))
                            askForWindows();
                    });
}

} // namespace talvera
