// SPDX-License-Identifier: MIT
#include "linux/wayland/sway/swayWindows.h"
#include "PrintQt.h"

#include <gtest/gtest.h>

using namespace talvera;

namespace {

QByteArray window(int id, const char* rest) {
    return R"({"id":)" + QByteArray::number(id) +
           R"(,"type":"con","nodes":[],"floating_nodes":[],"focus":[],)" + rest + "}";
}

std::vector<qint64> containers(const QByteArray& tree) {
    std::vector<qint64> found;
    for (const auto& each : swayWindows(tree))
        found.push_back(each.container);
    return found;
}

TEST(SwayWindows, windowOfAWaylandProgram_isKnownByItsId) {
    const auto windows =
        swayWindows(R"({"id":1,"type":"root","focused":false,"nodes":[)" +
                    window(7, R"("pid":42,"app_id":"foot","focused":true,"name":"~")") + "]}");
    ASSERT_EQ(windows.size(), 1U);
    EXPECT_EQ(windows[0].container, 7);
    EXPECT_EQ(windows[0].pid, 42);
    EXPECT_EQ(windows[0].identity.applicationId, "foot");
    EXPECT_EQ(windows[0].identity.windowClass, "");
    EXPECT_TRUE(windows[0].hasFocus);
}

TEST(SwayWindows, windowOfAnXProgram_isKnownByItsClass) {
    const auto windows =
        swayWindows(R"({"id":1,"nodes":[)" + window(8, R"("pid":43,"app_id":null,"focused":false,
                                 "window_properties":{"class":"XTerm","instance":"xterm"})") +
                    "]}");
    ASSERT_EQ(windows.size(), 1U);
    EXPECT_EQ(windows[0].identity.applicationId, "");
    EXPECT_EQ(windows[0].identity.windowClass, "XTerm");
    EXPECT_EQ(windows[0].identity.instance, "xterm");
    EXPECT_FALSE(windows[0].hasFocus);
}

TEST(SwayWindows, order_isThatOfTheFocus) {
    const auto pid = R"("pid":5)";
    const auto inner = R"({"id":3,"nodes":[)" + window(10, pid) + "," + window(11, pid) +
                       R"(],"floating_nodes":[)" + window(12, pid) + R"(],"focus":[12,11,10]})";
    const auto other =
        R"({"id":4,"nodes":[)" + window(20, pid) + "," + window(21, pid) + R"(],"focus":[21,20]})";
    EXPECT_EQ(containers(R"({"id":1,"nodes":[)" + inner + "," + other + R"(],"focus":[4,3]})"),
              (std::vector<qint64>{21, 20, 12, 11, 10}));
    // What the list of the focus doesn't name comes last.
    EXPECT_EQ(
        containers(R"({"id":1,"nodes":[)" + window(30, pid) + "," + window(31, pid) + R"(],"focus":[31]})"),
        (std::vector<qint64>{31, 30}));
}

TEST(SwayWindows, whatIsNoTree_hasNone) {
    for (const auto* tree :
         {"", "{", "[]", "null", R"({"nodes":7})", R"({"nodes":[1,"x",null,[]],"focus":{}})",
          R"({"pid":"42"})", R"({"pid":-1})", R"({"pid":0})"})
        EXPECT_TRUE(swayWindows(tree).empty()) << tree;
}

} // namespace
