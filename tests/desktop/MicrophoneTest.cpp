// SPDX-License-Identifier: MIT
// Microphones and sound servers that go and come.
#include "Microphone.h"
#include "DesktopTest.h"

#include <csignal>

using namespace talvera::test;

namespace {

class Microphones : public DesktopTest {
protected:
    /// The loss is told on the way, in no particular order.
    void awaitDenial() {
        if (agent->count("microphone denied") == 0)
            agent->await("microphone denied");
    }
};

class SoundServerDeath : public Microphones {};

} // namespace

TEST_F(Microphones, unplugged_isAskedForUntilItIsPluggedInAgain) {
    startAgent();
    Receiver editor(Receiver::Kind::Gtk);
    Microphone::unplug();
    agent->await("microphone denied");
    agent->await("hud permissionRequired microphone");
    keys.press(hotkey); // refused at once, without the hold delay
    agent->await("hud permissionRequired microphone");
    keys.release(hotkey);

    Microphone::plugIn();
    agent->await("microphone authorized");
    agent->await("hud hidden");
    EXPECT_EQ(agent->count("menu recording"), 0);
    holdAndSay(spoken("Good morning."));
    EXPECT_TRUE(editor.waitForText("Good morning.")) << editor.text().toStdString();
    agent->await("menu idle");
}

TEST_F(Microphones, unpluggedDuringARecording_leavesWhatWasSaidBefore) {
    startAgent();
    Receiver editor(Receiver::Kind::Gtk);
    keys.press(hotkey);
    agent->await("menu recording");
    voice.sayAndWait(spoken("Good morning."));
    Microphone::unplug();
    agent->await("hud notice The microphone is gone. What you said before is kept.");
    awaitDenial();
    keys.release(hotkey);
    EXPECT_TRUE(editor.waitForText("Good morning.")) << editor.text().toStdString();
    agent->await("menu idle");
    Microphone::plugIn();
    agent->await("microphone authorized");
}

TEST_F(SoundServerDeath, duringARecording_leavesWhatWasSaidBefore) {
    startAgent();
    Receiver editor(Receiver::Kind::Gtk);
    keys.press(hotkey);
    agent->await("menu recording");
    voice.sayAndWait(spoken("Good morning."));
    for (const pid_t server : processes("pulseaudio"))
        ::kill(server, SIGKILL);
    agent->await("hud notice The microphone is gone. What you said before is kept.");
    awaitDenial();
    keys.release(hotkey);
    EXPECT_TRUE(editor.waitForText("Good morning.")) << editor.text().toStdString();
    agent->await("menu idle");

    keys.press(hotkey); // nothing to record from: told at once
    agent->await("hud permissionRequired microphone");
    keys.release(hotkey);
}
