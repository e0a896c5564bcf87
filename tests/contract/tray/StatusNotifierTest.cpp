// SPDX-License-Identifier: MIT
// The item as panels meet it on the session bus.
#include "NotifierWatcher.h"
#include "PrintQt.h"
#include "eventually.h"
#include "linux/tray/StatusNotifierLink.h"
#include "square.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusReply>
#include <QVariantMap>

#include <gtest/gtest.h>

#include <memory>
#include <optional>

using namespace talvera;
using namespace talvera::test;

namespace {

class StatusNotifier : public testing::Test {
protected:
    StatusNotifier() {
        item.setSymbol("mic.fill");
        item.onActivate = [this](QPoint place) { clicks.push_back(place); };
        link.onHostChanged = [this] { ++changes; };
    }

    bool isShown() const { return watcher && watcher->items().size() == 1; }

    /// Asks the item over the bus, as panels do.
    static QDBusMessage ask(const QString& service, const char* interface, const char* method,
                            const QVariantList& arguments) {
        auto call = QDBusMessage::createMethodCall(service, "/StatusNotifierItem", interface, method);
        call.setArguments(arguments);
        auto bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, "panel");
        QDBusPendingCallWatcher answer(bus.asyncCall(call));
        eventually([&] { return answer.isFinished(); });
        return answer.reply();
    }

    std::optional<NotifierWatcher> watcher;
    StatusNotifierItem item{square, "/icons"};
    StatusNotifierLink link{item};
    std::vector<QPoint> clicks;
    int changes = 0;
};

TEST_F(StatusNotifier, noWatcher_thereIsNoHost) {
    EXPECT_EQ(link.hasHost(), std::nullopt); // not known yet
    EXPECT_TRUE(eventually([&] { return link.hasHost() == false; }));
}

TEST_F(StatusNotifier, watcherComesLater_itemIsRegistered) {
    link.setShown(true);
    ASSERT_TRUE(eventually([&] { return link.hasHost() == false; }));
    watcher.emplace();
    EXPECT_TRUE(eventually([&] { return isShown(); }));
    EXPECT_EQ(link.hasHost(), true);
}

TEST_F(StatusNotifier, watcherComesBack_itemIsRegisteredAgain) {
    link.setShown(true);
    watcher.emplace();
    ASSERT_TRUE(eventually([&] { return isShown(); }));
    watcher.reset();
    ASSERT_TRUE(eventually([&] { return link.hasHost() == false; }));
    watcher.emplace();
    EXPECT_TRUE(eventually([&] { return isShown(); }));
}

TEST_F(StatusNotifier, watcherWithoutAPanel_isNoHostUntilOneJoins) {
    link.setShown(true);
    watcher.emplace(false);
    ASSERT_TRUE(eventually([&] { return link.hasHost() == false; }));
    EXPECT_TRUE(watcher->items().isEmpty());
    watcher->setHasHost(true);
    EXPECT_TRUE(eventually([&] { return isShown(); }));
    watcher->setHasHost(false);
    EXPECT_TRUE(eventually([&] { return link.hasHost() == false; }));
}

TEST_F(StatusNotifier, hidden_leavesTheTrayAndComesBack) {
    watcher.emplace();
    link.setShown(true);
    ASSERT_TRUE(eventually([&] { return isShown(); }));
    link.setShown(false);
    EXPECT_TRUE(eventually([&] { return watcher->items().isEmpty(); }));
    link.setShown(true);
    EXPECT_TRUE(eventually([&] { return isShown(); }));
}

TEST_F(StatusNotifier, properties_areWhatPanelsAskFor) {
    watcher.emplace();
    link.setShown(true);
    ASSERT_TRUE(eventually([&] { return isShown(); }));
    const auto answer = ask(watcher->items().front(), "org.freedesktop.DBus.Properties", "GetAll",
                            {"org.kde.StatusNotifierItem"});
    ASSERT_EQ(answer.type(), QDBusMessage::ReplyMessage) << qPrintable(answer.errorMessage());
    const auto all = qdbus_cast<QVariantMap>(answer.arguments().front());
    EXPECT_EQ(all["Id"], "talvera");
    EXPECT_EQ(all["Title"], "Talvera");
    EXPECT_EQ(all["Status"], "Active");
    EXPECT_EQ(all["Category"], "ApplicationStatus");
    EXPECT_EQ(all["IconName"], "talvera-mic-fill-symbolic");
    EXPECT_EQ(all["IconThemePath"], "/icons");
    EXPECT_EQ(all["ItemIsMenu"], false);
    EXPECT_FALSE(all.contains("Menu"));
    const auto pixmaps = qdbus_cast<NotifierPixmaps>(all["IconPixmap"]);
    ASSERT_GE(pixmaps.size(), 6);
    EXPECT_EQ(pixmaps.front().width, 16);
    EXPECT_EQ(pixmaps.front().argb.size(), 16 * 16 * 4);
    EXPECT_EQ(pixmaps.front().argb.left(4).toHex(), "ff7d79f2"); // alpha first
    EXPECT_EQ(qdbus_cast<NotifierToolTip>(all["ToolTip"]).title, "Talvera");
}

TEST_F(StatusNotifier, everyKindOfClick_tellsItsPlace) {
    watcher.emplace();
    link.setShown(true);
    ASSERT_TRUE(eventually([&] { return isShown(); }));
    for (const auto* click : {"Activate", "SecondaryActivate", "ContextMenu"})
        ask(watcher->items().front(), "org.kde.StatusNotifierItem", click, {20, 30});
    EXPECT_EQ(clicks, std::vector(3, QPoint(20, 30)));
}

} // namespace
