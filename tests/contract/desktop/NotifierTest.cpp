// SPDX-License-Identifier: MIT
#include "FakeDesktopServices.h"
#include "PrivateBus.h"
#include "concurrency/QtMainActor.h"
#include "linux/dbus/DesktopNotifier.h"

#include <QCoreApplication>
#include <QProcess>

#include <gtest/gtest.h>

#include <optional>

using namespace talvera;
using namespace talvera::test;

namespace {

class NotifierContract : public testing::Test {
protected:
    bool shows(Notifier& notifier) {
        std::optional<bool> shown;
        notifier.notify(QStringLiteral("A <title>"), QStringLiteral("one & <b>two</b>"),
                        [&shown](bool wasShown) { shown = wasShown; });
        EXPECT_FALSE(shown); // in a later turn
        while (!shown)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        return *shown;
    }

    int argumentCount = 1;
    char program[5] = "test";
    char* arguments[2] = {program, nullptr};
    QCoreApplication application{argumentCount, arguments};
    QtMainActor actor;
};

TEST_F(NotifierContract, fake_showsAndTells) {
    FakeNotifier notifier(actor);
    EXPECT_TRUE(shows(notifier));
    EXPECT_EQ(notifier.shown, QStringList{QStringLiteral("A <title>|one & <b>two</b>")});
    notifier.isThere = false;
    EXPECT_FALSE(shows(notifier));
    EXPECT_EQ(notifier.shown.size(), 1);
}

TEST_F(NotifierContract, desktop_showsPlainTexts) {
    const PrivateBus bus;
    QProcess service;
    PrivateBus::start(service, QStringLiteral(TALVERA_NOTIFICATION_SERVICE), {bus.address()});
    DesktopNotifier notifier([&bus] { return bus.connection(); });
    EXPECT_TRUE(shows(notifier));
    while (!service.canReadLine() && service.waitForReadyRead()) {
    }
    EXPECT_EQ(service.readLine(), "A <title>|one &amp; &lt;b&gt;two&lt;/b&gt;\n");
    service.kill();
    service.waitForFinished();
}

TEST_F(NotifierContract, desktopWithoutNotifications_saysSo) {
    const PrivateBus bus;
    DesktopNotifier notifier([&bus] { return bus.connection(); });
    EXPECT_FALSE(shows(notifier));
}

TEST_F(NotifierContract, noBus_saysSo) {
    DesktopNotifier notifier([] {
        return QDBusConnection::connectToBus(QStringLiteral("unix:path=/nowhere"), QStringLiteral("nowhere"));
    });
    EXPECT_FALSE(shows(notifier));
}

} // namespace
