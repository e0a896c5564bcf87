// SPDX-License-Identifier: MIT
// Taps that hear keys alone from the helper. In its place stands a script that tells what a test has it tell,
// in the words that the helper itself is held to (HelperInMachineTest).
#include "linux/lonekeys/LoneKeyEventTaps.h"
#include "FakeEventTap.h"
#include "QtApplication.h"
#include "eventually.h"
#include "linux/support/FileDescriptor.h"
#include "linux/support/processes.h"

#include <QCoreApplication>
#include <QFile>
#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace talvera::test {

namespace {

const auto* const environment = testing::AddGlobalTestEnvironment(new QtApplication<QCoreApplication>);

constexpr mode_t ofReaders = 02755;

class StandInHelper {
public:
    StandInHelper() {
        QFile script(path());
        EXPECT_TRUE(script.open(QFile::WriteOnly));
        script.write(R"sh(#!/bin/sh
cd "$(dirname "$0")"
echo "$$ $*" >>starts
while read -r line; do
    [ "$line" != end ] || exit
    echo "$line"
done <lines
)sh");
        script.close();
        EXPECT_EQ(::chmod(QFile::encodeName(path()).constData(), ofReaders), 0);
        const auto lines = QFile::encodeName(m_place.filePath("lines"));
        EXPECT_EQ(::mkfifo(lines.constData(), 0600), 0);
        m_lines = FileDescriptor(::open(lines.constData(), O_RDWR | O_CLOEXEC)); // never at its end
    }

    QString path() const { return m_place.filePath("helper"); }
    void tells(const QByteArray& lines) const {
        EXPECT_EQ(::write(m_lines.get(), lines.constData(), static_cast<std::size_t>(lines.size())),
                  lines.size());
    }

    /// The words that it was started with, each time.
    QStringList startedFor() const {
        QStringList words;
        for (const auto& start : starts())
            words << start.section(' ', 1);
        return words;
    }
    /// The process of its last start runs.
    bool isRunning() const {
        const auto all = starts();
        return !all.isEmpty() && processRuns(all.last().section(' ', 0, 0).toInt());
    }

private:
    QStringList starts() const {
        QFile file(m_place.filePath("starts"));
        if (!file.open(QFile::ReadOnly))
            return {};
        return QString::fromUtf8(file.readAll()).split('\n', Qt::SkipEmptyParts);
    }

    const QTemporaryDir m_place;
    FileDescriptor m_lines;
};

/// Writes down what a tap tells: "+54" for a press, "-54" for its end, "*" for another key.
struct Owner {
    explicit Owner(EventTapFactory& taps)
        : tap(taps.create([this](const KeyEvent& event) {
            const auto key = QString::number(static_cast<int>(event.keyCode));
            told << (event.keyCode == VirtualKey::Unnamed ? QStringLiteral("*")
                     : isPress(event)                     ? '+' + key
                                                          : '-' + key);
            if (givesUp)
                tap->setEnabled(false);
            return Verdict::Pass;
        })) {}

    bool isTold(const QStringList& expected) const {
        return eventually([&] { return told.size() >= expected.size(); }) && told == expected;
    }

    QStringList told;
    bool givesUp = false;
    std::unique_ptr<EventTap> tap;
};

class LoneKeys : public testing::Test {
protected:
    /// A session that tells of chords alone.
    std::unique_ptr<EventTapFactory> session() {
        auto keyboard = std::make_unique<FakeKeyboard>();
        keyboard->tellsChordsOnly = true;
        chords = keyboard.get();
        return keyboard;
    }
    void hold(VirtualKey key) {
        ASSERT_EQ(owner.tap->watchKey(key), WatchResult::Watching);
        owner.tap->setEnabled(true);
    }

    StandInHelper helper;
    FakeKeyboard* chords = nullptr;
    LoneKeyEventTaps taps{session(), helper.path()};
    Owner owner{taps};
};

} // namespace

TEST_F(LoneKeys, keyHeldAlone_isToldDownAndUp) {
    hold(VirtualKey::RightOption);
    helper.tells("keyboards 1\ndown 100\nup 100\n");
    EXPECT_TRUE(owner.isTold({"+61", "-61"}));
    EXPECT_EQ(helper.startedFor(), QStringList("100"));
}

TEST_F(LoneKeys, otherKeyMeanwhile_isToldWithoutItsName) {
    hold(VirtualKey::RightOption);
    helper.tells("down 100\nother\nup 100\n");
    EXPECT_TRUE(owner.isTold({"+61", "*", "-61"}));
}

TEST_F(LoneKeys, virtualKeyOnTwoPhysicalOnes_isUpWhenBothAre) {
    hold(VirtualKey::RightCommand);
    helper.tells("down 97\ndown 126\nup 97\nother\nup 126\n");
    EXPECT_TRUE(owner.isTold({"+54", "*", "-54"}));
    EXPECT_EQ(helper.startedFor(), QStringList("97 126"));
}

TEST_F(LoneKeys, keyThatTheHelperDoesNotTell_isNotToBeHad) {
    EXPECT_EQ(owner.tap->watchKey(VirtualKey::Shift), WatchResult::ChordsOnly);
    EXPECT_EQ(owner.tap->watchKey(VirtualKey::A), WatchResult::ChordsOnly);
    owner.tap->setEnabled(true);
    EXPECT_EQ(helper.startedFor(), QStringList());
}

TEST_F(LoneKeys, nobodyWaitingAnyMore_endsTheHelper) {
    hold(VirtualKey::RightOption);
    helper.tells("down 100\n");
    EXPECT_TRUE(owner.isTold({"+61"}));
    ASSERT_TRUE(helper.isRunning());
    owner.tap->watchNothing();
    EXPECT_FALSE(helper.isRunning());
    hold(VirtualKey::RightOption);
    EXPECT_TRUE(eventually([this] { return helper.startedFor().size() == 2; }));
    owner.tap->setEnabled(false);
    EXPECT_FALSE(helper.isRunning());
}

TEST_F(LoneKeys, ownerThatGivesUpInTheMiddle_isToldNoMore) {
    hold(VirtualKey::RightOption);
    owner.givesUp = true;
    helper.tells("down 100\nother\nup 100\n");
    EXPECT_TRUE(owner.isTold({"+61"}));
    QCoreApplication::processEvents();
    EXPECT_EQ(owner.told, QStringList("+61"));
}

TEST_F(LoneKeys, helperThatEnds_letsGoOfTheKeyAndBreaksTheTap) {
    hold(VirtualKey::RightOption);
    helper.tells("down 100\nend\n");
    EXPECT_TRUE(owner.isTold({"+61", "-61"}));
    EXPECT_TRUE(owner.tap->isBroken());

    Owner next(taps);
    ASSERT_EQ(next.tap->watchKey(VirtualKey::RightOption), WatchResult::Watching);
    next.tap->setEnabled(true);
    EXPECT_FALSE(next.tap->isBroken());
    helper.tells("down 100\n");
    EXPECT_TRUE(next.isTold({"+61"}));
}

TEST_F(LoneKeys, helperThatIsGone_breaksTheTap) {
    LoneKeyEventTaps without(session(), QStringLiteral("/nonexistent/helper"));
    Owner other(without);
    EXPECT_EQ(other.tap->watchKey(VirtualKey::RightOption), WatchResult::Watching);
    EXPECT_FALSE(other.tap->isBroken());
    other.tap->setEnabled(true);
    EXPECT_TRUE(other.tap->isBroken());
}

TEST_F(LoneKeys, chord_isHeardFromTheSession) {
    hold(VirtualKey::RightOption);
    ASSERT_TRUE(eventually([this] { return helper.isRunning(); }));
    EXPECT_EQ(owner.tap->watchChord({KeyFlag::Control, VirtualKey::Space}), WatchResult::Watching);
    EXPECT_FALSE(helper.isRunning());
    chords->press(VirtualKey::Control);
    chords->press(VirtualKey::Space);
    EXPECT_TRUE(owner.told.contains("+49"));
}

TEST_F(LoneKeys, chordThatIsTaken_isSaidToBe) {
    const KeyChord chord{KeyFlag::Control, VirtualKey::Space};
    chords->takenChords.push_back(chord);
    EXPECT_EQ(owner.tap->watchChord(chord), WatchResult::ChordTaken);
    WatchResult news = WatchResult::ChordTaken;
    owner.tap->onResultChange = [&news](WatchResult result) { news = result; };
    chords->taps().back()->onResultChange(WatchResult::Watching);
    EXPECT_EQ(news, WatchResult::Watching);
}

TEST_F(LoneKeys, sessionWithoutChords_hearsKeysAloneStill) {
    LoneKeyEventTaps alone(nullptr, helper.path());
    Owner other(alone);
    EXPECT_EQ(other.tap->watchChord({KeyFlag::Control, VirtualKey::Space}), WatchResult::Unavailable);
    ASSERT_EQ(other.tap->watchKey(VirtualKey::RightOption), WatchResult::Watching);
    other.tap->setEnabled(true);
    helper.tells("down 100\n");
    EXPECT_TRUE(other.isTold({"+61"}));
}

TEST_F(LoneKeys, sessionThatLetsNobodyWatch_makesNoTap) {
    chords->refusesTaps = true;
    EXPECT_EQ(taps.create([](const KeyEvent&) { return Verdict::Pass; }), nullptr);
}

TEST_F(LoneKeys, helper_countsAsInstalledWhenItMayReadKeyboards) {
    const auto path = QFile::encodeName(helper.path());
    EXPECT_TRUE(LoneKeyProgram::isInstalled(helper.path()));
    ::chmod(path.constData(), 0644);
    EXPECT_FALSE(LoneKeyProgram::isInstalled(helper.path()));
    ::chmod(path.constData(), 0755);
    EXPECT_FALSE(LoneKeyProgram::isInstalled(helper.path()));
    EXPECT_FALSE(LoneKeyProgram::isInstalled(QStringLiteral("/nonexistent/helper")));
}

} // namespace talvera::test
