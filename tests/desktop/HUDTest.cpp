// SPDX-License-Identifier: MIT
// What the user sees and hears of the HUD while they work: read from the screen and from the accessibility
// bus.
#include "DesktopTest.h"
#include "HUDOnScreen.h"
#include "RecogniserGate.h"

#include <QProcess>

#include <algorithm>

using namespace talvera::test;

namespace {

class HUDWhileDictating : public DesktopTest {
protected:
    bool appears() {
        return eventually([this] { return hud.place().has_value(); });
    }
    bool disappears() {
        return eventually([this] { return !hud.place(); });
    }
    /// A good part of the HUD has the colour of its plane.
    bool isPainted() {
        return eventually([this] {
            const auto pixels = hud.pixels();
            return std::count_if(pixels.begin(), pixels.end(), [](std::uint32_t pixel) {
                       return (pixel & 0xff) > 0xf4 && (pixel >> 8 & 0xff) > 0xf4 && (pixel >> 16) > 0xf4;
                   }) > 3000;
        });
    }
    bool moves() {
        const auto before = hud.pixels();
        return eventually([&] { return hud.pixels() != before; });
    }
    bool says(const QString& role, const QString& name) {
        return eventually([&] { return HUDOnScreen::readAloud(agent->pid()).contains(role + "\t" + name); });
    }
    void click(const QPoint& place) {
        keys.pointAt(place.x(), place.y());
        keys.pressButton();
        keys.releaseButton();
    }

    HUDOnScreen hud;
};

} // namespace

TEST_F(HUDWhileDictating, eachState_isSeenAndReadAloudAndTheFocusStays) {
    RecogniserGate gate;
    startAgent({}, gate.program());
    Receiver editor(Receiver::Kind::Gtk);
    const auto active = hud.activeWindow();
    EXPECT_FALSE(hud.place());

    keys.press(RightCtrl);
    agent->await("hud listening");
    EXPECT_TRUE(appears());
    EXPECT_TRUE(isPainted());
    EXPECT_TRUE(moves());
    EXPECT_TRUE(says("alert", "Release to insert"));
    EXPECT_EQ(hud.activeWindow(), active);

    voice.sayAndWait(spoken("Good morning."));
    keys.release(RightCtrl);
    agent->await("hud transcribing");
    gate.awaitRun();
    EXPECT_TRUE(says("alert", "Transcribing…"));
    EXPECT_TRUE(isPainted());
    EXPECT_EQ(hud.activeWindow(), active);

    gate.letIn();
    EXPECT_TRUE(editor.waitForText("Good morning."));
    agent->await("hud hidden");
    EXPECT_TRUE(disappears());
}

TEST_F(HUDWhileDictating, clickOnIt_meetsTheApplicationBelow) {
    startAgent();
    Receiver editor(Receiver::Kind::Gtk);
    keys.press(RightCtrl);
    agent->await("hud listening");
    ASSERT_TRUE(appears());
    ASSERT_TRUE(isPainted());
    const auto active = hud.activeWindow();
    ASSERT_EQ(QProcess::execute("xdotool", {"getactivewindow", "windowsize", "--sync", "1200", "700",
                                            "windowmove", "--sync", "20", "50"}),
              0);
    click(hud.place()->center());
    voice.sayAndWait(spoken("Good morning."));
    keys.release(RightCtrl);
    EXPECT_TRUE(editor.waitForText("Good morning."));
    EXPECT_EQ(hud.activeWindow(), active);
    agent->await("hud hidden");
}

TEST_F(HUDWhileDictating, noticeOfSilence_goesByItself) {
    startAgent();
    Receiver editor(Receiver::Kind::Gtk);
    keys.press(RightCtrl);
    agent->await("state recording");
    voice.sayAndWait(Samples(16000, 0));
    keys.release(RightCtrl);
    agent->await("hud notice");
    EXPECT_TRUE(isPainted());
    EXPECT_TRUE(disappears());
}
