// SPDX-License-Identifier: MIT
#include "linux/dbus/PackageKitUpdates.h"

#include "linux/dbus/PackageKitTransaction.h"

#include <QStringList>

#include <utility>

namespace talvera {

using Kind = UpdateAnswer::Kind;

namespace {

/// Bits of PackageKit's filters.
constexpr qulonglong everything = 1U << 1U;
constexpr qulonglong installedOnes = 1U << 2U;

/// A service that has not answered by then never will.
constexpr auto patience = std::chrono::minutes(3);

} // namespace

/// First whether the system has installed us, then whether it has something newer.
class PackageKitUpdates::Question {
public:
    using Done = std::function<void(const UpdateAnswer&)>;

    Question(MainActor& actor, QDBusConnection bus, QString package, Done done)
        : m_actor(actor)
        , m_bus(std::move(bus))
        , m_package(std::move(package))
        , m_done(std::move(done))
        , m_timer(actor.startTimer(patience, [this] {
            end({Kind::Failed, {}});
        })) {
        ask(QStringLiteral("Resolve"), {installedOnes, QStringList{m_package}},
            [this](const auto& result) { resolved(result); });
    }
    Question(const Question&) = delete;
    Question& operator=(const Question&) = delete;
    ~Question() { m_actor.cancelTimer(m_timer); }

private:
    using Result = PackageKitTransaction::Result;

    void ask(const QString& method, const QVariantList& arguments,
             const std::function<void(const Result&)>& then) {
        m_transaction = new PackageKitTransaction(m_bus, m_package, method, arguments, then);
        m_transaction->setParent(&m_parent);
    }

    void resolved(const Result& result) {
        if (result.kind != Result::Kind::Answered)
            return failed(result);
        if (!result.version)
            return end({Kind::NotAPackage, {}});
        m_transaction->deleteLater();
        ask(QStringLiteral("GetUpdates"), {everything}, [this](const auto& updates) {
            if (updates.kind != Result::Kind::Answered)
                failed(updates);
            else if (updates.version)
                end({Kind::Available, *updates.version});
            else
                end({Kind::UpToDate, {}});
        });
    }

    void failed(const Result& result) {
        end({result.kind == Result::Kind::NoService ? Kind::NoService : Kind::Failed, {}});
    }

    void end(const UpdateAnswer& answer) {
        m_actor.cancelTimer(m_timer);
        if (auto done = std::exchange(m_done, nullptr))
            m_actor.post([done = std::move(done), answer] { done(answer); });
    }

    MainActor& m_actor;
    QDBusConnection m_bus;
    QString m_package;
    Done m_done;
    MainActor::TimerId m_timer;
    QObject m_parent;
    PackageKitTransaction* m_transaction = nullptr;
};

PackageKitUpdates::PackageKitUpdates(MainActor& actor, QString package, std::function<QDBusConnection()> bus)
    : m_actor(actor)
    , m_package(std::move(package))
    , m_bus(std::move(bus)) {}

PackageKitUpdates::~PackageKitUpdates() = default;

void PackageKitUpdates::check(std::function<void(const UpdateAnswer&)> done) {
    m_question = std::make_unique<Question>(m_actor, m_bus(), m_package, std::move(done));
}

} // namespace talvera
