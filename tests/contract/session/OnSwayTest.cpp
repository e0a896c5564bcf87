// SPDX-License-Identifier: MIT
// A Wayland session with an X server for X programs, which must not be taken for the session.
#include "RecordingConsole.h"
#include "SimulatedMainActor.h"
#include "app/SessionBackEnds.h"
#include "linux/applications/DesktopEntryCatalog.h"
#include "platform/system/Directories.h"

#include <QCoreApplication>
#include <QProcess>

#include <gtest/gtest.h>

#include <future>
#include <map>

using namespace talvera;
using namespace talvera::test;

namespace {

class SessionOnSway : public testing::Test {
protected:
    ~SessionOnSway() override {
        for (const auto& [name, value] : before)
            ::qputenv(name, value);
    }

    SessionBackEnds choose(const SessionOffer& offer) {
        return chooseBackEnds(offer, {actor, console, directories, installed});
    }

    /// What a test changes comes back for the next one.
    const std::map<const char*, QByteArray> before{{"WAYLAND_DISPLAY", qgetenv("WAYLAND_DISPLAY")},
                                                   {"XDG_SESSION_TYPE", qgetenv("XDG_SESSION_TYPE")},
                                                   {"SWAYSOCK", qgetenv("SWAYSOCK")},
                                                   {"XDG_CURRENT_DESKTOP", qgetenv("XDG_CURRENT_DESKTOP")}};
    int argumentCount = 0;
    QCoreApplication application{argumentCount, nullptr};
    SimulatedMainActor actor;
    RecordingConsole console;
    const Directories directories{"/run/talvera", "/home/data", "/home/config", "/opt/talvera"};
    DesktopEntryCatalog installed{{}, {}};
};

TEST_F(SessionOnSway, xServerOfTheCompositor_isNotTakenForTheSession) {
    const auto offer = SessionOffer::open();
    EXPECT_TRUE(offer.hasX11());
    EXPECT_TRUE(offer.whyNoWindows().isEmpty());
    EXPECT_EQ(offer.kind(), SessionKind::Wayland);
}

TEST_F(SessionOnSway, xServerOfTheCompositor_isKnownWithoutVariables) {
    for (const auto* variable : {"WAYLAND_DISPLAY", "XDG_SESSION_TYPE", "SWAYSOCK", "XDG_CURRENT_DESKTOP"})
        ::qunsetenv(variable);
    EXPECT_EQ(SessionOffer::open().kind(), SessionKind::Wayland);
}

TEST_F(SessionOnSway, sway_isAskedForKeysAndWindowsAndLetsUsType) {
    const auto offer = SessionOffer::open();
    const auto chosen = choose(offer);
    EXPECT_NE(chosen.eventTaps->create([](const KeyEvent&) { return Verdict::Pass; }), nullptr);
    EXPECT_FALSE(chosen.eventTaps->hearsKeysAlone());
    EXPECT_EQ(chosen.access->lacks(), std::vector<SessionLack>());
    EXPECT_TRUE(chosen.access->canWatchKeys());
}

TEST_F(SessionOnSway,
       swayThatDoesntAnswer_isACompositorWithoutKeysAndThoseOfXProgramsAreNotWatchedInTheirPlace) {
    auto offer = SessionOffer::open();
    offer.swaySocket = "/nowhere";
    const auto chosen = choose(offer);
    EXPECT_EQ(chosen.eventTaps->create([](const KeyEvent&) { return Verdict::Pass; }), nullptr);
    EXPECT_EQ(chosen.access->lacks(), std::vector<SessionLack>()); // keys are bound to commands
    EXPECT_FALSE(chosen.access->canWatchKeys());
    EXPECT_EQ(chosen.workspace->frontmostApplication(), std::nullopt);
}

TEST_F(SessionOnSway, keysAreTypedByTheCompositor_whoKnowsThatNoWindowIsThere) {
    const auto offer = SessionOffer::open();
    const auto chosen = choose(offer);
    auto& poster = *chosen.keyPoster;
    EXPECT_EQ(poster.postPaste(KeyPhase::Down, nullptr), PostResult::Posted);
    EXPECT_EQ(poster.postPaste(KeyPhase::Up, nullptr), PostResult::Posted);
    EXPECT_EQ(poster.postPaste(KeyPhase::Down, poster.focusedTarget()), PostResult::TargetLost);
}

TEST_F(SessionOnSway, withoutAnAnswerOfTheCompositor_nothingCanBeTyped) {
    ::qputenv("WAYLAND_DISPLAY", "/nowhere");
    const auto offer = SessionOffer::open();
    const auto chosen = choose(offer);
    auto& poster = *chosen.keyPoster;
    EXPECT_EQ(poster.postPaste(KeyPhase::Down, nullptr), PostResult::CutOff);
    EXPECT_EQ(chosen.access->lacks(), std::vector{SessionLack::KeyPosting});
}

TEST_F(SessionOnSway, clipboard_isTheCompositors) {
    const auto offer = SessionOffer::open();
    const auto chosen = choose(offer);
    EXPECT_TRUE(std::async(std::launch::async, [&] { return chosen.pasteboard->setString("größer"); }).get());
    QProcess other;
    other.start("wl-paste", {"-n"});
    EXPECT_TRUE(other.waitForFinished());
    EXPECT_EQ(QString::fromUtf8(other.readAllStandardOutput()), "größer");
}

TEST_F(SessionOnSway, ownWindows_haveAllTheyNeed) {
    const auto offer = SessionOffer::open();
    const auto chosen = choose(offer);
    EXPECT_EQ(chosen.overlays->workArea().has_value(), true);
    EXPECT_TRUE(chosen.panels);
    EXPECT_TRUE(chosen.pointer);
    EXPECT_TRUE(chosen.statusItem);
    EXPECT_TRUE(chosen.keyboardLayout);
    EXPECT_TRUE(chosen.pasteboard);
    EXPECT_EQ(chosen.workspace->ownBundleID(), "talvera");
}

} // namespace
