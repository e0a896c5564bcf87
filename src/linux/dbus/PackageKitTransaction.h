// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QString>
#include <QVariantList>

#include <functional>
#include <optional>

namespace talvera {

/// One question to PackageKit about one package. Lives until it has its answer or is destroyed.
class PackageKitTransaction final : public QObject {
    Q_OBJECT

public:
    struct Result {
        enum class Kind { Answered, NoService, Failed };
        Kind kind = Kind::Failed;
        std::optional<QString> version; ///< of the package that was asked for, if it is among what was found
    };

    /// Calls `method` of a new transaction and tells `done` what came of it, from the event loop. `done` may
    /// destroy this.
    PackageKitTransaction(QDBusConnection bus, QString package, QString method, QVariantList arguments,
                          std::function<void(const Result&)> done);

private Q_SLOTS:
    void package(uint info, const QString& packageId, const QString& summary);
    void finished(uint exit, uint runtime);

private:
    void created(const QDBusObjectPath& transaction);
    void call(const QString& method, const QVariantList& arguments);
    void failed(const QDBusError& error);
    void end(Result::Kind kind);

    QDBusConnection m_bus;
    QString m_package;
    QString m_method;
    QVariantList m_arguments;
    std::function<void(const Result&)> m_done;
    QDBusServiceWatcher m_service;
    QString m_path;
    std::optional<QString> m_version;
};

} // namespace talvera
