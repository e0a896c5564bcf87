// SPDX-License-Identifier: MIT
// Microphones and sound servers that go and come.
#include "DesktopTest.h"

#include <csignal>

using namespace talvera::test;

namespace {

class Microphone : public DesktopTest {
protected:
    static void controlSound(const QStringList& arguments) {
        QProcess control;
        control.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        control.start("pactl", arguments);
        ASSERT_TRUE(control.waitForFinished());
        ASSERT_EQ(control.exitCode(), 0) << arguments.join(' ').toStdString();
    }

    static void unplug() { controlSound({"unload-module", "module-remap-source"}); }

    static void plugIn() {
        controlSound(
            {"load-module", "module-remap-source", "source_name=rigmic", "master=rigmic_feed.monitor"});
        controlSound({"set-default-source", "rigmic"});
    }
};

class SoundServerDeath : public DesktopTest {};

} // namespace

TEST_F(Microphone, unplugged_isAskedForUntilItIsPluggedInAgain) {
    startAgent();
    Receiver editor(Receiver::Kind::Gtk);
    unplug();
    agent->await("microphone denied");
    agent->await("hud permission microphone");
    keys.press(RightCtrl); // refused at once, without the hold delay
    agent->await("hud permission microphone");
    keys.release(RightCtrl);

    plugIn();
    agent->await("microphone authorized");
    agent->await("hud hidden");
    EXPECT_EQ(agent->count("state recording"), 0);
    holdAndSay(spoken("Good morning."));
    EXPECT_TRUE(editor.waitForText("Good morning.")) << editor.text().toStdString();
    agent->await("state idle");
}

TEST_F(Microphone, unpluggedDuringARecording_leavesWhatWasSaidBefore) {
    startAgent();
    Receiver editor(Receiver::Kind::Gtk);
    keys.press(RightCtrl);
    agent->await("state recording");
    voice.sayAndWait(spoken("Good morning."));
    unplug();
    agent->await("microphone denied");
    keys.release(RightCtrl);
    EXPECT_TRUE(editor.waitForText("Good morning.")) << editor.text().toStdString();
    agent->await("state idle");
    plugIn();
    agent->await("microphone authorized");
}

TEST_F(SoundServerDeath, duringARecording_leavesWhatWasSaidBefore) {
    startAgent();
    Receiver editor(Receiver::Kind::Gtk);
    keys.press(RightCtrl);
    agent->await("state recording");
    voice.sayAndWait(spoken("Good morning."));
    for (const pid_t server : processes("pulseaudio"))
        ::kill(server, SIGKILL);
    agent->await("microphone denied");
    keys.release(RightCtrl);
    EXPECT_TRUE(editor.waitForText("Good morning.")) << editor.text().toStdString();
    agent->await("state idle");

    keys.press(RightCtrl); // nothing to record from: told at once
    agent->await("hud permission microphone");
    keys.release(RightCtrl);
}
