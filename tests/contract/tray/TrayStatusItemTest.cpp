// SPDX-License-Identifier: MIT
// The item between the two kinds of trays that a desktop may have.
#include "linux/tray/TrayStatusItem.h"
#include "FakeTrayIcon.h"
#include "NotifierWatcher.h"
#include "PrintQt.h"
#include "SimulatedMainActor.h"
#include "eventually.h"
#include "square.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

using namespace talvera;
using namespace talvera::test;

namespace {

class TrayStatusItemTest : public testing::Test {
protected:
    TrayStatusItemTest() {
        auto made = std::make_unique<FakeTrayIcon>();
        icon = made.get();
        item = std::make_unique<TrayStatusItem>(actor, square, "/icons", std::move(made));
        item->onClick = [this] { ++clicks; };
        item->onNoTray = [this] { ++lacks; };
        item->setSymbol("mic.fill");
        item->setToolTip("Ready");
        item->setVisible(true);
    }

    SimulatedMainActor actor;
    FakeTrayIcon* icon = nullptr;
    std::unique_ptr<TrayStatusItem> item;
    int clicks = 0;
    int lacks = 0;
};

TEST_F(TrayStatusItemTest, panelThatShowsItems_isPreferredToTheIcon) {
    EXPECT_FALSE(icon->shown) << "not before it is known which of them there is";
    ASSERT_TRUE(eventually([this] { return icon->shown; })) << "no panel shows items";
    NotifierWatcher watcher;
    EXPECT_TRUE(eventually([this] { return !icon->shown; }));
    EXPECT_TRUE(eventually([&] { return watcher.items().size() == 1; }));
}

TEST_F(TrayStatusItemTest, icon_saysWhatTheItemSays) {
    EXPECT_EQ(icon->symbol, "mic.fill");
    EXPECT_EQ(icon->title, "Ready");
    ASSERT_TRUE(eventually([this] { return icon->shown; }));
    EXPECT_EQ(item->frame(), icon->place);
    item->setVisible(false);
    EXPECT_FALSE(icon->shown);
    EXPECT_EQ(item->frame(), std::nullopt);
}

TEST_F(TrayStatusItemTest, clickOnTheIcon_isToldInATurnOfItsOwn) {
    icon->onClick();
    EXPECT_EQ(clicks, 0);
    actor.settle();
    EXPECT_EQ(clicks, 1);
}

TEST_F(TrayStatusItemTest, noTrayOfEitherKind_isToldOnceAfterTheSessionsStart) {
    icon->trayIsThere = false;
    ASSERT_TRUE(eventually([this] { return icon->shown; }));
    actor.advance(TrayStatusItem::patience - seconds(0.1));
    EXPECT_EQ(lacks, 0);
    actor.advance(seconds(60));
    EXPECT_EQ(lacks, 1);
}

TEST_F(TrayStatusItemTest, trayOfTheOldKind_isNoReasonToComplain) {
    ASSERT_TRUE(eventually([this] { return icon->shown; }));
    actor.advance(seconds(60));
    EXPECT_EQ(lacks, 0);
}

TEST_F(TrayStatusItemTest, withoutAnOwnerThatAsks_nothingWakesUpToLookForATray) {
    TrayStatusItem unasked(actor, square, "/icons", std::make_unique<FakeTrayIcon>());
    actor.advance(seconds(60)); // the other item has asked, and has its answer
    unasked.setVisible(true);
    EXPECT_FALSE(actor.hasTimers());
}

} // namespace
