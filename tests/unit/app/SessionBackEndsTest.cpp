// SPDX-License-Identifier: MIT
#include "app/SessionBackEnds.h"
#include "RecordingConsole.h"
#include "SimulatedMainActor.h"
#include "linux/applications/DesktopEntryCatalog.h"
#include "platform/system/Directories.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

using namespace talvera;
using namespace talvera::test;

namespace {

TEST(SessionBackEnds, sessionWithoutXServer_isAnsweredByWhatIsAbsent) {
    int argumentCount = 0;
    const QCoreApplication application(argumentCount, nullptr);
    const X11Server none(":4711");
    const SessionOffer offer{.server = none, .x11 = none.connect()};
    EXPECT_FALSE(offer.hasX11());
    EXPECT_FALSE(offer.whyNoWindows().isEmpty());

    SimulatedMainActor actor;
    RecordingConsole console;
    const Directories directories{"/run/talvera", "/home/data", "/home/config", "/opt/talvera"};
    DesktopEntryCatalog installed({}, {});
    const auto chosen = chooseBackEnds(offer, {actor, console, directories, installed});
    EXPECT_EQ(chosen.eventTaps->create([](const KeyEvent&) { return Verdict::Pass; }), nullptr);
    EXPECT_EQ(chosen.access->lacks(), std::vector{SessionLack::KnownSession});
    EXPECT_EQ(chosen.keyPoster->postPaste(KeyPhase::Down, chosen.keyPoster->focusedTarget()),
              PostResult::CutOff);
    EXPECT_FALSE(chosen.pasteboard->setString(QStringLiteral("kept nowhere")));
    EXPECT_EQ(chosen.workspace->frontmostApplication(), std::nullopt);
    EXPECT_EQ(chosen.workspace->ownBundleID(), QStringLiteral("talvera"));
    EXPECT_EQ(chosen.overlays->workArea(), std::nullopt);
    EXPECT_FALSE(chosen.panels->isComposited());
    EXPECT_TRUE(chosen.pointer);
    EXPECT_TRUE(chosen.keyboardLayout);
    EXPECT_EQ(chosen.statusItem->frame(), std::nullopt);
}

} // namespace
