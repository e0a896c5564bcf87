// SPDX-License-Identifier: MIT
#include "app/CommandLine.h"

#include <gtest/gtest.h>

using namespace talvera;

namespace {

using Verb = AgentCommand::Verb;

template <typename Purpose>
bool is(const QStringList& arguments) {
    return std::holds_alternative<Purpose>(CommandLine::purposeOf(arguments));
}

TEST(CommandLineTest, noArgumentAndThoseOfTheToolkit_areForTheAgent) {
    EXPECT_TRUE(is<CommandLine::Run>({}));
    EXPECT_TRUE(is<CommandLine::Run>({"-platform", "xcb"}));
    EXPECT_TRUE(is<CommandLine::Run>({"--style", "press"}));
}

TEST(CommandLineTest, verb_isACommand) {
    const auto purpose = CommandLine::purposeOf({"status", "--json"});
    ASSERT_TRUE(std::holds_alternative<CommandLine::Command>(purpose));
    EXPECT_EQ(std::get<CommandLine::Command>(purpose).command, (AgentCommand{Verb::Status, true}));
    EXPECT_TRUE(is<CommandLine::Command>({"toggle"}));
    EXPECT_TRUE(is<CommandLine::Command>({"settings", "hotkey"}));
    EXPECT_TRUE(is<CommandLine::Run>({"--settings", "hotkey"}));
}

TEST(CommandLineTest, helpAndVersion_areTheirOwnPurposes) {
    for (const auto* help : {"--help", "-h", "help"})
        EXPECT_TRUE(is<CommandLine::Help>({help})) << help;
    EXPECT_TRUE(is<CommandLine::Version>({"--version"}));
}

TEST(CommandLineTest, otherWords_areToldBack) {
    for (const QStringList& arguments : {QStringList{"dictate"}, QStringList{"press", "now"},
                                         QStringList{"settings", "nonsense"}, QStringList{""}}) {
        const auto purpose = CommandLine::purposeOf(arguments);
        ASSERT_TRUE(std::holds_alternative<CommandLine::Misuse>(purpose))
            << arguments.join(u' ').toStdString();
        EXPECT_EQ(std::get<CommandLine::Misuse>(purpose).arguments, arguments.join(u' '));
    }
}

} // namespace
