// SPDX-License-Identifier: MIT
#include "linux/dbus/PackageKitTransaction.h"

#include "linux/dbus/callLater.h"

#include <QDBusError>
#include <QDBusReply>
#include <QStringList>

#include <utility>

namespace talvera {

namespace {

const auto service = QStringLiteral("org.freedesktop.PackageKit");
const auto rootPath = QStringLiteral("/org/freedesktop/PackageKit");
const auto transactionInterface = QStringLiteral("org.freedesktop.PackageKit.Transaction");

constexpr uint exitSuccess = 1;

/// The service may be asleep, and wakes up for the first call.
constexpr int patienceInMilliseconds = 25'000;

/// The error says that there is no such service, rather than that it failed.
bool meansNobody(const QDBusError& error) {
    switch (error.type()) {
    case QDBusError::ServiceUnknown:
    case QDBusError::Disconnected:
    case QDBusError::NoServer:
    case QDBusError::UnknownObject:
    case QDBusError::UnknownMethod:
    case QDBusError::UnknownInterface:
        return true;
    default:
        return error.name() == u"org.freedesktop.DBus.Error.NameHasNoOwner" ||
               error.name().startsWith(u"org.freedesktop.DBus.Error.Spawn.");
    }
}

} // namespace

PackageKitTransaction::PackageKitTransaction(QDBusConnection bus, QString package, QString method,
                                             QVariantList arguments, std::function<void(const Result&)> done)
    : m_bus(std::move(bus))
    , m_package(std::move(package))
    , m_method(std::move(method))
    , m_arguments(std::move(arguments))
    , m_done(std::move(done))
    , m_service(service, m_bus, QDBusServiceWatcher::WatchForUnregistration) {
    connect(&m_service, &QDBusServiceWatcher::serviceUnregistered, this,
            [this] { end(Result::Kind::Failed); });
    const auto create =
        QDBusMessage::createMethodCall(service, rootPath, service, QStringLiteral("CreateTransaction"));
    callLater(m_bus, create, patienceInMilliseconds, *this, [this](const QDBusMessage& reply) {
        const QDBusReply<QDBusObjectPath> answer(reply);
        if (answer.isValid())
            created(answer.value());
        else
            failed(answer.error());
    });
}

void PackageKitTransaction::created(const QDBusObjectPath& transaction) {
    m_path = transaction.path();
    m_bus.connect(service, m_path, transactionInterface, QStringLiteral("Package"), this,
                  SLOT(package(uint, QString, QString)));
    m_bus.connect(service, m_path, transactionInterface, QStringLiteral("Finished"), this,
                  SLOT(finished(uint, uint)));
    // The user waits for this, and a list of yesterday's is not too old.
    call(QStringLiteral("SetHints"),
         {QStringList{QStringLiteral("interactive=true"), QStringLiteral("cache-age=86400")}});
    call(m_method, m_arguments);
}

void PackageKitTransaction::call(const QString& method, const QVariantList& arguments) {
    auto message = QDBusMessage::createMethodCall(service, m_path, transactionInterface, method);
    message.setArguments(arguments);
    callLater(m_bus, message, patienceInMilliseconds, *this, [this](const QDBusMessage& reply) {
        if (reply.type() == QDBusMessage::ErrorMessage)
            failed(QDBusError(reply));
    });
}

void PackageKitTransaction::package(uint, const QString& packageId, const QString&) {
    const auto parts = packageId.split(u';'); // name, version, architecture, origin
    if (parts.size() >= 2 && parts[0] == m_package)
        m_version = parts[1];
}

void PackageKitTransaction::finished(uint exit, uint) {
    end(exit == exitSuccess ? Result::Kind::Answered : Result::Kind::Failed);
}

void PackageKitTransaction::failed(const QDBusError& error) {
    end(m_path.isEmpty() && meansNobody(error) ? Result::Kind::NoService : Result::Kind::Failed);
}

void PackageKitTransaction::end(Result::Kind kind) {
    if (const auto done = std::exchange(m_done, nullptr))
        done({kind, m_version});
}

} // namespace talvera
