// SPDX-License-Identifier: MIT
// What the user sees and hears of the HUD while they work: read from the screen and from the accessibility
// bus.
#include "DesktopTest.h"
#include "HUDOnScreen.h"
#include "OtherWindow.h"
#include "RecogniserGate.h"
#include "ScreenReader.h"

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
        return eventually([&] { return ScreenReader::find(agent->pid(), role, name).has_value(); });
    }
    /// Clicks on the middle of the HUD, and answers how often the application has been clicked on then.
    int clicksThrough(OtherWindow& application, int expected) {
        EXPECT_TRUE(appears());
        const auto middle = hud.place().value_or(QRect()).center();
        keys.click(middle.x(), middle.y());
        return application.awaitClicks(expected);
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

    keys.press(hotkey);
    agent->await("hud listening");
    EXPECT_TRUE(appears());
    EXPECT_TRUE(isPainted());
    EXPECT_TRUE(moves());
    EXPECT_TRUE(says("alert", "Release to insert"));
    EXPECT_EQ(hud.activeWindow(), active);

    voice.sayAndWait(spoken("Good morning."));
    keys.release(hotkey);
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

TEST_F(HUDWhileDictating, clicksOnIt_meetTheApplicationBelowInEveryState) {
    RecogniserGate gate;
    startAgent({}, gate.program());
    OtherWindow application({0, 0, 1280, 800}, Qt::darkGreen);
    application.activate();
    keys.press(hotkey);
    agent->await("hud listening");
    EXPECT_EQ(clicksThrough(application, 1), 1);

    voice.sayAndWait(Samples(16000, 0));
    keys.release(hotkey);
    agent->await("hud transcribing");
    gate.awaitRun();
    EXPECT_EQ(clicksThrough(application, 2), 2);

    gate.letIn();
    agent->await("hud notice");
    EXPECT_EQ(clicksThrough(application, 3), 3);
    EXPECT_TRUE(application.isActive());
}

TEST_F(HUDWhileDictating, noticeOfSilence_goesByItself) {
    startAgent();
    Receiver editor(Receiver::Kind::Gtk);
    keys.press(hotkey);
    agent->await("menu recording");
    voice.sayAndWait(Samples(16000, 0));
    keys.release(hotkey);
    agent->await("hud notice");
    EXPECT_TRUE(isPainted());
    EXPECT_TRUE(disappears());
}
