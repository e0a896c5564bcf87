// SPDX-License-Identifier: MIT
#include "linux/commands/commandSocketPaths.h"
#include "PrintQt.h"

#include <QProcessEnvironment>

#include <gtest/gtest.h>

using namespace talvera;

namespace {

QStringList paths(const QString& wayland, const QString& x11) {
    QProcessEnvironment environment;
    if (!wayland.isNull())
        environment.insert("WAYLAND_DISPLAY", wayland);
    if (!x11.isNull())
        environment.insert("DISPLAY", x11);
    return commandSocketPaths("/run", environment);
}

TEST(CommandSocketPathsTest, sessionsOfEitherKind_haveTheirName) {
    EXPECT_EQ(paths("wayland-1", {}), QStringList{"/run/wayland-1.socket"});
    EXPECT_EQ(paths({}, ":0"), QStringList{"/run/:0.socket"});
    EXPECT_EQ(paths("wayland-1", ":0"), QStringList({"/run/wayland-1.socket", "/run/:0.socket"}));
}

TEST(CommandSocketPathsTest, noSession_hasNone) {
    EXPECT_EQ(paths({}, {}), QStringList());
    EXPECT_EQ(paths("", ""), QStringList());
    EXPECT_EQ(paths({}, "nonsense"), QStringList());
}

TEST(CommandSocketPathsTest, oneServerByAllItsNames_isOne) {
    EXPECT_EQ(paths("/run/user/1000/wayland-1", {}), paths("wayland-1", {}));
    for (const auto* name : {":0.0", ":0.1", "unix:0", "unix:0.0", "unix/:0"})
        EXPECT_EQ(paths({}, name), paths({}, ":0")) << name;
}

TEST(CommandSocketPathsTest, otherServers_areOthers) {
    EXPECT_EQ(paths({}, "localhost:10.0"), QStringList{"/run/localhost:10.socket"});
    EXPECT_EQ(paths({}, "tcp/host:1"), QStringList{"/run/tcp_host:1.socket"});
    EXPECT_NE(paths({}, ":1"), paths({}, ":10"));
}

} // namespace
