// SPDX-License-Identifier: MIT
#include "TypingAgent.h"
#include "TypingTools.h"

#include "RigInput.h"
#include "keys.h"
#include "linux/x11/typing/X11KeyEventPoster.h"
#include "receivers/Receiver.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <tuple>
#include <unistd.h>

using namespace talvera;
using namespace talvera::test;

namespace {

void pressPasteChord() {
    X11KeyEventPoster poster{X11Server()};
    poster.postPaste(KeyPhase::Down, nullptr);
    poster.postPaste(KeyPhase::Up, nullptr);
}

} // namespace

TEST(AgentKilled, halfWayThroughAText_keymapAndKeysAreAsBefore) {
    setLayout("us");
    const std::string before = keymap();
    TypingAgent agent;
    const pid_t companion = agent.companion();
    agent.tell("begin Привет, мир");
    for (const char* step : {"down 0", "up 0", "down 1", "up 1", "down 2"}) {
        agent.tell(step);
    }
    ASSERT_NE(keymap(), before);
    ASSERT_NE(keyboardState(), "");
    agent.kill();
    ASSERT_TRUE(awaitEnd(companion)); // it holds no text, so it ends when it has put things right
    EXPECT_EQ(keymap(), before);
    EXPECT_EQ(keyboardState(), "");
}

TEST(AgentKilled, withShiftDown_shiftIsReleased) {
    setLayout("us");
    TypingAgent agent;
    const pid_t companion = agent.companion();
    agent.tell("begin ABC");
    agent.tell("down 0");
    ASSERT_EQ(keyboardState(), "keys 38 50 held 1 ");
    agent.kill();
    ASSERT_TRUE(awaitEnd(companion));
    EXPECT_EQ(keyboardState(), "");
}

TEST(AgentKilled, whileCapsLockIsLifted_itIsLockedAgain) {
    setLayout("us");
    RigInput keys;
    keys.tap(Key::capsLock);
    TypingAgent agent;
    const pid_t companion = agent.companion();
    agent.tell("begin abc");
    agent.tell("down 0");
    ASSERT_EQ(keyboardState(), "keys 38 ");
    agent.kill();
    ASSERT_TRUE(awaitEnd(companion));
    EXPECT_EQ(keyboardState(), "locked 2 ");
    keys.tap(Key::capsLock);
}

TEST(AgentKilled, itsLastCharactersAreStillReadRight) {
    setLayout("us");
    Receiver receiver(Receiver::Kind::Gtk);
    TypingAgent agent;
    const pid_t companion = agent.companion();
    agent.tell("begin мир");
    receiver.signal(SIGSTOP);
    for (const char* step : {"down 0", "up 0", "down 1", "up 1", "down 2", "up 2"}) {
        agent.tell(step);
    }
    agent.kill();
    receiver.signal(SIGCONT);
    EXPECT_TRUE(receiver.waitForText(QStringLiteral("мир"))) << receiver.text().toStdString();
    ASSERT_TRUE(awaitEnd(companion));
}

TEST(AgentKilled, companionToo_nextStartPutsThingsRight) {
    setLayout("us");
    const std::string before = keymap();
    TypingAgent agent;
    const pid_t companion = agent.companion();
    agent.tell("begin Привет");
    agent.tell("down 0");
    ::kill(companion, SIGKILL);
    ASSERT_TRUE(awaitEnd(companion));
    agent.kill();
    ASSERT_NE(keymap(), before);
    ASSERT_NE(keyboardState(), "");
    const X11KeyEventPoster next{X11Server()};
    EXPECT_EQ(keymap(), before);
    EXPECT_EQ(keyboardState(), "");
}

TEST(AgentKilled, clipboardSurvivesUntilSomebodyTakesIt) {
    Receiver receiver(Receiver::Kind::Gtk);
    TypingAgent agent;
    const pid_t companion = agent.companion();
    agent.tell("clipboard the last words");
    agent.kill();
    pressPasteChord();
    EXPECT_TRUE(receiver.waitForText(QStringLiteral("the last words"))) << receiver.text().toStdString();
    outputOf("for s in clipboard primary; do echo other | xclip -selection $s -i >/dev/null 2>&1; done");
    EXPECT_TRUE(awaitEnd(companion));
}

TEST(AgentStalled, pasteWaitsForNothing) {
    Receiver receiver(Receiver::Kind::Terminal);
    TypingAgent agent;
    agent.tell("clipboard words of one who stalls");
    agent.stop();
    pressPasteChord();
    EXPECT_TRUE(receiver.waitForText(QStringLiteral("words of one who stalls")))
        << receiver.text().toStdString();
    agent.goOn();
    agent.tell("clipboard new words");
    pressPasteChord();
    EXPECT_TRUE(receiver.waitForText(QStringLiteral("words of one who stallsnew words")))
        << receiver.text().toStdString();
}

TEST(AgentEnded, clipboardSurvives) {
    Receiver receiver(Receiver::Kind::Qt);
    {
        TypingAgent agent;
        agent.tell("clipboard good bye");
    }
    pressPasteChord();
    EXPECT_TRUE(receiver.waitForText(QStringLiteral("good bye"))) << receiver.text().toStdString();
}

TEST(Companion, keepsNothingOfTheAgentOpen) {
    TypingAgent agent;
    agent.tell("clipboard so that it is known to be at work");
    const pid_t companion = agent.companion();
    const std::filesystem::path process = "/proc/" + std::to_string(companion);
    EXPECT_EQ(::getsid(companion), companion);
    if (::geteuid() != 0) { // it holds the user's texts, and so lets no other program of theirs look into it
        EXPECT_THROW(std::ignore = std::filesystem::read_symlink(process / "cwd"),
                     std::filesystem::filesystem_error);
        return;
    }
    EXPECT_EQ(std::filesystem::read_symlink(process / "cwd"), "/");
    int sockets = 0;
    for (const auto& descriptor : std::filesystem::directory_iterator(process / "fd")) {
        const std::string target = std::filesystem::read_symlink(descriptor.path());
        sockets += target.starts_with("socket:") ? 1 : 0;
        EXPECT_TRUE(target == "/dev/null" || target.starts_with("socket:") ||
                    target == "anon_inode:[signalfd]")
            << target;
    }
    EXPECT_EQ(sockets, 2); // the agent's and the X server's
}

TEST(Companion, killedOrStopped_isReplacedAtTheNextText) {
    Receiver receiver(Receiver::Kind::Qt);
    TypingAgent agent;
    const pid_t first = agent.companion();
    ::kill(first, SIGKILL);
    agent.tell("clipboard one ");
    pressPasteChord();
    ASSERT_TRUE(receiver.waitForText(QStringLiteral("one "))) << receiver.text().toStdString();
    const pid_t second = agent.companion();
    EXPECT_NE(second, first);
    ::kill(second, SIGSTOP);
    agent.tell("clipboard two");
    pressPasteChord();
    EXPECT_TRUE(receiver.waitForText(QStringLiteral("one two"))) << receiver.text().toStdString();
    EXPECT_TRUE(awaitEnd(second));
}
