// SPDX-License-Identifier: MIT
#include "app/commandLineAnswer.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

using namespace talvera;

namespace {

TEST(CommandLineAnswer, startToRun_getsNone) {
    EXPECT_FALSE(commandLineAnswer({}));
    EXPECT_FALSE(commandLineAnswer({"-platform", "xcb"}));
    EXPECT_FALSE(commandLineAnswer({"--helpful", "-"}));
}

TEST(CommandLineAnswer, help_namesTheOptions) {
    const auto help = commandLineAnswer({"--help"});
    ASSERT_TRUE(help);
    EXPECT_TRUE(help->startsWith("Usage: talvera"));
    for (const auto* const option : {"--help", "--version"})
        EXPECT_TRUE(help->contains(QLatin1String(option))) << option;
    EXPECT_EQ(commandLineAnswer({"-h"}), help);
    EXPECT_EQ(commandLineAnswer({"--version", "--help"}), help);
}

TEST(CommandLineAnswer, version_isANumberOfThreeParts) {
    const auto version = commandLineAnswer({"--version"});
    ASSERT_TRUE(version);
    static const QRegularExpression form("^Talvera \\d+\\.\\d+\\.\\d+$");
    EXPECT_TRUE(form.match(*version).hasMatch()) << version->toStdString();
    EXPECT_EQ(commandLineAnswer({"-v"}), version);
}

} // namespace
