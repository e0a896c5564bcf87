// SPDX-License-Identifier: MIT
#include "SimulatedMainActor.h"
#include "platform/system/PlatformError.h"
#include "platform/system/Relauncher.h"
#include "shell/settings/LaunchAtLogin.h"
#include "shell/settings/StartSound.h"
#include "shell/settings/relaunchApplication.h"

#include <gtest/gtest.h>

#include <QStringList>

using namespace talvera;

namespace {

struct Player final : SoundPlayer {
    QStringList played;
    void play(const QString& name) override { played.append(name); }
};

TEST(StartSound, off_playsNothing) {
    Player player;
    playStartSound(player, "Off");
    EXPECT_TRUE(player.played.isEmpty());
}

TEST(StartSound, offInLowerCase_isAskedForLikeAnyName) {
    Player player;
    playStartSound(player, "off");
    playStartSound(player, "Submarine");
    EXPECT_EQ(player.played, QStringList({"off", "Submarine"}));
}

TEST(StartSound, all_is15RowsInDisplayOrder) {
    QStringList names;
    for (const auto& sound : StartSound::all())
        names << sound.name;
    EXPECT_EQ(names.join(u' ').toStdString(),
              "Off Basso Blow Bottle Frog Funk Glass Hero Morse Ping Pop Purr Sosumi Submarine Tink");
}

TEST(StartSound, byNameOfAnUnknownName_isSubmarine) {
    for (const auto* name : {u"Tink", u"Off", u"Submarine"})
        EXPECT_EQ(StartSound::byName(QString::fromUtf16(name)).name, QString::fromUtf16(name));
    for (const auto* name : {u"off", u"", u"Ding"})
        EXPECT_EQ(StartSound::byName(QString::fromUtf16(name)).name, u"Submarine");
}

struct Item final : LoginItem {
    bool registered = false;
    int calls = 0;
    bool isRegistered() override { return registered; }
    void registerProgram() override {
        ++calls;
        registered = true;
    }
    void unregisterProgram() override {
        ++calls;
        registered = false;
    }
};

struct Starter final : Relauncher {
    bool fails = false;
    int calls = 0;
    void startAgainAfterOurEnd() override {
        ++calls;
        if (fails)
            throw PlatformError(QStringLiteral("Relauncher"), 1);
    }
};

TEST(Relaunch, program_endsATenthOfASecondAfterTheNextOneIsSeenTo) {
    for (const bool fails : {false, true}) {
        test::SimulatedMainActor actor;
        Starter starter;
        starter.fails = fails;
        bool ended = false;
        relaunchApplication(actor, starter, [&ended] { ended = true; });
        EXPECT_EQ(starter.calls, 1);
        actor.advance(seconds(0.099));
        EXPECT_FALSE(ended);
        actor.advance(seconds(0.001));
        EXPECT_TRUE(ended);
    }
}

TEST(LaunchAtLogin, whatAlreadyIsSo_stays) {
    Item item;
    setLaunchAtLogin(item, false);
    EXPECT_EQ(item.calls, 0);
    setLaunchAtLogin(item, true);
    setLaunchAtLogin(item, true);
    EXPECT_EQ(item.calls, 1);
    setLaunchAtLogin(item, false);
    EXPECT_EQ(item.calls, 2);
    EXPECT_FALSE(item.registered);
}

} // namespace
