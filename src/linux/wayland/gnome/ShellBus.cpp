// SPDX-License-Identifier: MIT
#include "linux/wayland/gnome/ShellBus.h"

#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>

#include <algorithm>
#include <array>
#include <atomic>
#include <limits>
#include <utility>

namespace talvera {

namespace {

constexpr int patienceInMilliseconds = 2000;
constexpr int busPatienceInMilliseconds = 1000;
constexpr int withoutAnEnd = std::numeric_limits<int>::max();

QString freshName() {
    static std::atomic<int> number{0};
    return QStringLiteral("talvera-gnome-%1").arg(++number);
}

QDBusMessage toExtension(const QString& method, const QVariantList& arguments) {
    auto call = QDBusMessage::createMethodCall(ShellBus::extensionService, ShellBus::extensionPath,
                                               ShellBus::extensionInterface, method);
    call.setArguments(arguments);
    call.setAutoStartService(false);
    return call;
}

} // namespace

const QString ShellBus::shellService = QStringLiteral("org.gnome.Shell");
const QString ShellBus::extensionService = QStringLiteral("arpa.home.talvera.Shell");
const QString ShellBus::extensionPath = QStringLiteral("/arpa/home/talvera/Shell");
const QString ShellBus::extensionInterface = QStringLiteral("arpa.home.talvera.Shell1");

ShellBus::ShellBus(const QString& address)
    : m_name(freshName())
    , m_connection(address.isEmpty() ? QDBusConnection::connectToBus(QDBusConnection::SessionBus, m_name)
                                     : QDBusConnection::connectToBus(address, m_name)) {}

ShellBus::~ShellBus() {
    QDBusConnection::disconnectFromBus(m_name);
}

bool ShellBus::hasShell() const {
    return std::ranges::any_of(std::array{shellService, extensionService}, [this](const QString& service) {
        const auto reply = m_connection.call(ownerOf(service), QDBus::Block, busPatienceInMilliseconds);
        return reply.type() == QDBusMessage::ReplyMessage;
    });
}

QDBusMessage ShellBus::ownerOf(const QString& service) {
    const auto bus = QStringLiteral("org.freedesktop.DBus");
    auto question = QDBusMessage::createMethodCall(bus, QStringLiteral("/org/freedesktop/DBus"), bus,
                                                   QStringLiteral("GetNameOwner"));
    question << service;
    return question;
}

std::optional<QVariantList> ShellBus::ask(const QString& method, const QVariantList& arguments) const {
    const auto reply =
        m_connection.call(toExtension(method, arguments), QDBus::Block, patienceInMilliseconds);
    if (reply.type() != QDBusMessage::ReplyMessage)
        return std::nullopt;
    return reply.arguments();
}

void ShellBus::askLater(const QString& method, const QVariantList& arguments, QObject& owner,
                        std::function<void(const QVariantList* answer)> done) const {
    askLater(toExtension(method, arguments), owner, std::move(done));
}

/// Without a time-out, since an answer that is given up might tell of something done.
void ShellBus::askLater(const QDBusMessage& question, QObject& owner,
                        std::function<void(const QVariantList* answer)> done) const {
    auto* const call = new QDBusPendingCallWatcher(m_connection.asyncCall(question, withoutAnEnd), &owner);
    QObject::connect(call, &QDBusPendingCallWatcher::finished, &owner, [call, done = std::move(done)] {
        call->deleteLater();
        const auto reply = call->reply();
        const auto answer = reply.arguments();
        done(reply.type() == QDBusMessage::ReplyMessage ? &answer : nullptr);
    });
}

void ShellBus::tell(const QString& method, const QVariantList& arguments) const {
    m_connection.call(toExtension(method, arguments), QDBus::NoBlock);
}

} // namespace talvera
