// SPDX-License-Identifier: MIT
#include "linux/x11/server/X11EventPump.h"
#include "WatchedWindow.h"
#include "eventually.h"
#include "linux/x11/server/X11Server.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>

#include <gtest/gtest.h>

#include <sys/socket.h>

using namespace talvera;
using namespace talvera::test;

namespace {

class X11EventPumpTest : public testing::Test {
protected:
    int argumentCount = 1;
    char name[5] = "pump";
    char* arguments[2] = {name, nullptr};
    QCoreApplication application{argumentCount, arguments};
    std::unique_ptr<X11Connection> connection = X11Server().connect();
    WatchedWindow window{*connection};
    int handled = 0;
    int settled = 0;
    X11EventPump pump{*connection,
                      [this](const xcb_generic_event_t& event) { handled += window.changedIn(event) != 0; },
                      [this] { ++settled; }};
};

TEST_F(X11EventPumpTest, eventThatArrives_isHandedOver) {
    QCoreApplication::processEvents();
    window.setItem("FIRST", 1);
    connection->flush();
    EXPECT_TRUE(eventually([this] { return handled == 1; }));
    EXPECT_GE(settled, 1);
}

TEST_F(X11EventPumpTest, eventReadWhileAnAnswerWasWaitedFor_isHandedOverAllTheSame) {
    QCoreApplication::processEvents();
    window.setItem("FIRST", 1);
    ASSERT_TRUE(connection->roundTrip()); // the event has left the socket, and wakes nobody any more
    EXPECT_EQ(handled, 0) << "not amidst the work of who waited";
    EXPECT_TRUE(eventually([this] { return handled == 1; }));
}

TEST_F(X11EventPumpTest, drain_handsOverWhatIsThereAtOnce) {
    for (std::uint32_t value = 0; value < 3; ++value)
        window.setItem("FIRST", value);
    ASSERT_TRUE(connection->roundTrip());
    settled = 0;
    pump.drain();
    EXPECT_EQ(handled, 3);
    EXPECT_EQ(settled, 1);
    pump.drain();
    EXPECT_EQ(settled, 1) << "nothing new";
}

TEST_F(X11EventPumpTest, lostServer_wakesTheLoopNoMore) {
    QCoreApplication::processEvents();
    ::shutdown(connection->descriptor(), SHUT_RDWR);
    EXPECT_TRUE(eventually([this] { return connection->isBroken(); }));
    QCoreApplication::processEvents();
    EXPECT_FALSE(QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents));
}

TEST(X11EventPumpWithoutServer, pump_restsFromTheStart) {
    int argumentCount = 0;
    const QCoreApplication application(argumentCount, nullptr);
    const auto connection = X11Server(":4711").connect();
    int handled = 0;
    X11EventPump pump(*connection, [&](const xcb_generic_event_t&) { ++handled; });
    QCoreApplication::processEvents();
    pump.drain();
    EXPECT_EQ(handled, 0);
}

} // namespace
