// SPDX-License-Identifier: MIT
// What the rooms of X11 rely on when they ask the server, and when there is none.
#include "WatchedWindow.h"
#include "linux/x11/server/FocusedWindow.h"
#include "linux/x11/server/X11InputDevices.h"
#include "linux/x11/server/X11Server.h"
#include "linux/x11/server/compositor.h"
#include "linux/x11/server/serverTime.h"

#include <gtest/gtest.h>

#include <xcb/shape.h>
#include <xcb/xinput.h>

#include <string>

using namespace talvera;
using namespace talvera::test;
using namespace std::chrono_literals;

namespace {

class X11ConnectionTest : public testing::Test {
protected:
    auto soon() const { return std::chrono::steady_clock::now() + 10s; }

    std::unique_ptr<X11Connection> connection = X11Server().connect();
    WatchedWindow window{*connection};
};

TEST_F(X11ConnectionTest, waitForOneEvent_leavesTheOthersInTheirOrder) {
    for (const auto* property : {"FIRST", "SECOND", "THIRD"})
        window.setItem(property, 1);
    const auto isSecond = [&](const xcb_generic_event_t& event) {
        return window.changedIn(event) == connection->atom("SECOND");
    };
    ASSERT_TRUE(connection->waitForEvent(isSecond, soon()));
    for (const auto* property : {"FIRST", "THIRD"}) {
        const auto event = connection->waitForEvent(soon());
        ASSERT_TRUE(event);
        EXPECT_EQ(window.changedIn(*event), connection->atom(property)) << property;
    }
    EXPECT_FALSE(connection->pollEvent());
}

TEST_F(X11ConnectionTest, eventReadWithAnAnswer_isThereToBePolledAndTold) {
    int told = 0;
    connection->onEventsKept = [&] { ++told; };
    window.setItem("FIRST", 1);
    ASSERT_TRUE(connection->roundTrip());
    EXPECT_GT(told, 0);
    const auto event = connection->pollEvent();
    ASSERT_TRUE(event);
    EXPECT_EQ(window.changedIn(*event), connection->atom("FIRST"));
}

TEST_F(X11ConnectionTest, serverTime_goesOnAndLeavesOtherEvents) {
    window.setItem("FIRST", 1);
    const auto first = serverTime(*connection);
    const auto second = serverTime(*connection);
    ASSERT_TRUE(first && second);
    EXPECT_LT(*second - *first, 60'000U); // also when the clock of 32 bits runs over
    const auto event = connection->pollEvent();
    ASSERT_TRUE(event);
    EXPECT_EQ(window.changedIn(*event), connection->atom("FIRST"));
    EXPECT_FALSE(connection->pollEvent());
}

TEST_F(X11ConnectionTest, property_isReadInItsOwnFormatOnly) {
    window.setItem("NUMBER", 4711);
    window.setText("NAME", "ä\0b");
    const auto number = connection->read(connection->askProperty(window.id(), "NUMBER", 10));
    const auto name = connection->read(connection->askProperty(window.id(), "NAME", 10));
    EXPECT_EQ(number.items(), std::vector<std::uint32_t>{4711});
    EXPECT_EQ(number.bytes(), "");
    EXPECT_EQ(name.bytes(), "ä");
    EXPECT_TRUE(name.items().empty());
    EXPECT_EQ(connection->property(window.id(), connection->atom("NUMBER")), number.items());
}

TEST_F(X11ConnectionTest, property_isCutAtTheMostThatWasAskedFor) {
    window.setText("NAME", std::string(100, 'a'));
    EXPECT_EQ(connection->read(connection->askProperty(window.id(), "NAME", 2)).bytes(), "aaaaaaaa");
}

TEST_F(X11ConnectionTest, missingProperty_isToldFromAMissingWindow) {
    const auto missing = connection->read(connection->askProperty(window.id(), "MISSING", 10));
    EXPECT_TRUE(missing.windowExists());
    EXPECT_TRUE(missing.items().empty());
    const auto gone = connection->read(connection->askProperty(0x00ffffff, "MISSING", 10));
    EXPECT_FALSE(gone.windowExists());
    EXPECT_TRUE(gone.items().empty());
    EXPECT_EQ(gone.bytes(), "");
}

TEST_F(X11ConnectionTest, selectionAndCompositor_areSeenWhenTheyHaveAnOwner) {
    EXPECT_FALSE(isComposited(*connection));
    xcb_set_selection_owner(connection->get(), window.id(), compositorSelection(*connection),
                            XCB_CURRENT_TIME);
    EXPECT_TRUE(isComposited(*connection));
    EXPECT_EQ(connection->selectionOwner(compositorSelection(*connection)), window.id());
}

TEST_F(X11ConnectionTest, postingKeyboard_isTheOneThatTheServerCallsSo) {
    X11InputDevices devices;
    devices.load(*connection);
    const auto answer = connection->reply<xcb_input_xi_query_device_reply_t>(
        xcb_input_xi_query_device(connection->get(), XCB_INPUT_DEVICE_ALL));
    ASSERT_TRUE(answer);
    int seen = 0;
    for (auto each = xcb_input_xi_query_device_infos_iterator(answer.get()); each.rem > 0;
         xcb_input_xi_device_info_next(&each)) {
        const std::string name(xcb_input_xi_device_info_name(each.data), each.data->name_len);
        if (name.find("XTEST keyboard") == std::string::npos)
            continue;
        ++seen;
        EXPECT_EQ(devices.postingKeyboard(each.data->attachment), each.data->deviceid) << name;
        EXPECT_TRUE(devices.isPosted(each.data->deviceid)) << name;
    }
    EXPECT_GT(seen, 0);
    EXPECT_EQ(devices.postingKeyboard(0), std::nullopt);
}

TEST(X11ServerThatIsNotThere, connection_isBrokenAndEveryAnswerEmpty) {
    const auto connection = X11Server(":4711").connect();
    ASSERT_TRUE(connection);
    EXPECT_TRUE(connection->isBroken());
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(connection->roundTrip());
    EXPECT_FALSE(connection->pollEvent());
    EXPECT_FALSE(connection->waitForEvent(start + 10s));
    EXPECT_EQ(connection->atom("ANY"), xcb_atom_t{XCB_ATOM_NONE});
    EXPECT_EQ(connection->extension(xcb_shape_id), nullptr);
    EXPECT_TRUE(connection->property(connection->root(), XCB_ATOM_WM_NAME).empty());
    EXPECT_EQ(serverTime(*connection), std::nullopt);
    EXPECT_FALSE(isComposited(*connection));
    EXPECT_EQ(focusedWindow(*connection), xcb_window_t{XCB_NONE});
    EXPECT_EQ(processOfWindow(*connection, 1), 0);
    X11InputDevices devices;
    devices.load(*connection);
    EXPECT_TRUE(devices.all().empty());
    EXPECT_LT(std::chrono::steady_clock::now() - start, X11Connection::answerTimeout) << "waited for nothing";
}

} // namespace
