// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/MainActor.h"
#include "platform/system/UpdateService.h"

#include <QDBusConnection>
#include <QObject>
#include <QString>

#include <functional>
#include <memory>

namespace talvera {

/// Asks PackageKit, the package service that most desktops have on the system bus: whether the system has
/// installed this program, and whether it knows an update of it. The service does with the network what it
/// does for every package; we do nothing with it.
class PackageKitUpdates final : public UpdateService {
public:
    /// `bus` is called with the first question.
    PackageKitUpdates(MainActor& actor, QString package,
                      std::function<QDBusConnection()> bus = &QDBusConnection::systemBus);
    ~PackageKitUpdates() override;

    void check(std::function<void(const UpdateAnswer&)> done) override;

private:
    class Question;

    MainActor& m_actor;
    QString m_package;
    std::function<QDBusConnection()> m_bus;
    std::unique_ptr<Question> m_question;
};

} // namespace talvera
