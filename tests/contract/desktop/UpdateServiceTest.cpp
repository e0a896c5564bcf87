// SPDX-License-Identifier: MIT
#include "FakeDesktopServices.h"
#include "PrivateBus.h"
#include "concurrency/QtMainActor.h"
#include "linux/dbus/PackageKitUpdates.h"

#include <QCoreApplication>
#include <QProcess>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <optional>

using namespace talvera;
using namespace talvera::test;
using Kind = UpdateAnswer::Kind;

namespace {

class WithMainActor : public testing::Test {
protected:
    /// Runs the event loop until the service has answered.
    std::optional<UpdateAnswer> ask(UpdateService& service) {
        std::optional<UpdateAnswer> answer;
        service.check([&answer](const UpdateAnswer& given) { answer = given; });
        EXPECT_FALSE(answer); // in a later turn
        bool late = false;
        const auto timer = actor.startTimer(std::chrono::seconds(20), [&late] { late = true; });
        while (!answer && !late)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        actor.cancelTimer(timer);
        return answer;
    }

    int argumentCount = 1;
    char program[5] = "test";
    char* arguments[2] = {program, nullptr};
    QCoreApplication application{argumentCount, arguments};
    QtMainActor actor;
};

class UpdateServiceContract : public WithMainActor {};

TEST_F(UpdateServiceContract, fake_answersOnceInALaterTurn) {
    FakeUpdateService service(actor);
    service.answer = {Kind::Available, QStringLiteral("0.2.0")};
    EXPECT_EQ(ask(service), service.answer);
    EXPECT_EQ(ask(service), service.answer);
}

class PackageKitUpdatesTest : public WithMainActor {
protected:
    std::optional<UpdateAnswer> answerOf(const char* behaviour) {
        PrivateBus::start(service, QStringLiteral(TALVERA_PACKAGE_SERVICE),
                          {bus.address(), QString::fromLatin1(behaviour)});
        return ask(updates);
    }
    ~PackageKitUpdatesTest() override {
        service.kill();
        service.waitForFinished();
    }

    PrivateBus bus;
    QProcess service;
    PackageKitUpdates updates{actor, QStringLiteral("talvera"), [this] { return bus.connection(); }};
};

TEST_F(PackageKitUpdatesTest, nothingNewer_isUpToDate) {
    EXPECT_EQ(answerOf("current"), (UpdateAnswer{Kind::UpToDate, {}}));
    EXPECT_EQ(ask(updates), (UpdateAnswer{Kind::UpToDate, {}}));
}

TEST_F(PackageKitUpdatesTest, newerPackage_isToldWithItsVersion) {
    EXPECT_EQ(answerOf("update"), (UpdateAnswer{Kind::Available, QStringLiteral("0.2.0")}));
    const auto calls = QString::fromUtf8(service.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
    ASSERT_EQ(calls.size(), 4);
    EXPECT_TRUE(calls[0].startsWith(u"SetHints"));
    EXPECT_EQ(calls[1], QStringLiteral("Resolve (4, ['talvera'])"));
    EXPECT_EQ(calls[3], QStringLiteral("GetUpdates (2,)"));
}

TEST_F(PackageKitUpdatesTest, copyThatIsNoPackage_isToldApart) {
    EXPECT_EQ(answerOf("foreign"), (UpdateAnswer{Kind::NotAPackage, {}}));
}

TEST_F(PackageKitUpdatesTest, error_isAFailure) {
    EXPECT_EQ(answerOf("error"), (UpdateAnswer{Kind::Failed, {}}));
}

TEST_F(PackageKitUpdatesTest, refusal_isAFailure) {
    EXPECT_EQ(answerOf("refuses"), (UpdateAnswer{Kind::Failed, {}}));
}

TEST_F(PackageKitUpdatesTest, serviceThatDies_isAFailure) {
    EXPECT_EQ(answerOf("vanishes"), (UpdateAnswer{Kind::Failed, {}}));
}

TEST_F(PackageKitUpdatesTest, noService_isSaidPlainly) {
    EXPECT_EQ(ask(updates), (UpdateAnswer{Kind::NoService, {}}));
}

TEST_F(PackageKitUpdatesTest, noBus_isNoService) {
    PackageKitUpdates nowhere(actor, QStringLiteral("talvera"), [] {
        return QDBusConnection::connectToBus(QStringLiteral("unix:path=/nowhere"), QStringLiteral("nowhere"));
    });
    EXPECT_EQ(ask(nowhere), (UpdateAnswer{Kind::NoService, {}}));
}

TEST_F(PackageKitUpdatesTest, endWhileTheServiceIsSilent_leavesNothing) {
    PrivateBus::start(service, QStringLiteral(TALVERA_PACKAGE_SERVICE),
                      {bus.address(), QStringLiteral("silent")});
    PackageKitUpdates shortLived(actor, QStringLiteral("talvera"), [this] { return bus.connection(); });
    shortLived.check([](const auto&) { ADD_FAILURE() << "nobody has answered"; });
    while (!service.canReadLine()) {
        QCoreApplication::processEvents();
        service.waitForReadyRead(10);
    }
}

/// What we speak with is a part of what PackageKit publishes.
TEST(PackageServiceMock, interface_isAPartOfThePublishedOne) {
    QProcess mock;
    mock.start(QStringLiteral(TALVERA_PACKAGE_SERVICE), {QStringLiteral("--interfaces")});
    ASSERT_TRUE(mock.waitForFinished());
    const auto members = QString::fromUtf8(mock.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
    ASSERT_EQ(members.size(), 7);
    for (const auto& line : members) {
        const auto words = line.split(u' ');
        QFile published(QStringLiteral("/usr/share/dbus-1/interfaces/%1.xml").arg(words[0]));
        ASSERT_TRUE(published.open(QIODevice::ReadOnly)) << "PackageKit is not installed here";
        const auto xml = QString::fromUtf8(published.readAll());
        const QRegularExpression member(
            QStringLiteral("<(method|signal) name=\"%1\">(.*?)</\\1>").arg(words[1]),
            QRegularExpression::DotMatchesEverythingOption);
        const auto body = member.match(xml);
        ASSERT_TRUE(body.hasMatch()) << line.toStdString();
        QString in;
        QString out;
        static const QRegularExpression argument(QStringLiteral("<arg ([^>]*)>"));
        auto found = argument.globalMatch(body.captured(2));
        while (found.hasNext()) {
            const auto attributes = found.next().captured(1);
            static const QRegularExpression type(QStringLiteral("type=\"([^\"]*)\""));
            (attributes.contains(u"direction=\"in\"") ? in : out) += type.match(attributes).captured(1);
        }
        const auto types = body.captured(1) == u"method" ? in + u'>' + out : out;
        EXPECT_EQ(types, words[2]) << line.toStdString();
    }
}

} // namespace
