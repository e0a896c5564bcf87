// SPDX-License-Identifier: MIT
#include "linux/wayland/sway/SwayIpc.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QLocalServer>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace talvera;

namespace {

SwayIpc sway() {
    return SwayIpc(qEnvironmentVariable("SWAYSOCK"));
}

TEST(SwayIpcTest, tree_isAnswered) {
    const auto tree = sway().ask(SwayIpc::Request::GetTree);
    ASSERT_TRUE(tree);
    EXPECT_EQ(QJsonDocument::fromJson(*tree).object()["type"].toString(), "root");
}

TEST(SwayIpcTest, command_isDoneOrRefused) {
    EXPECT_TRUE(sway().run("nop"));
    EXPECT_FALSE(sway().run("dance"));
    EXPECT_FALSE(sway().run("nop; dance"));
    EXPECT_FALSE(sway().run("[con_id=123456789] focus"));
}

TEST(SwayIpcTest, noSocket_isNoAnswer) {
    EXPECT_EQ(SwayIpc("/nowhere").ask(SwayIpc::Request::GetTree), std::nullopt);
    EXPECT_FALSE(SwayIpc(QString()).run("nop"));
}

TEST(SwayIpcTest, silentSway_isNotWaitedForLong) {
    const QTemporaryDir directory;
    QLocalServer silent;
    ASSERT_TRUE(silent.listen(directory.filePath("socket")));
    EXPECT_EQ(SwayIpc(silent.fullServerName()).ask(SwayIpc::Request::GetTree), std::nullopt);
}

} // namespace
