// SPDX-License-Identifier: MIT
#include "ObservedFakes.h"
#include "SoundServerTest.h"
#include "linux/audio/SndFileReader.h"
#include "linux/pulse/PulseSoundPlayer.h"
#include "listening.h"
#include "shell/settings/StartSound.h"
#include "shortestOf.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <map>

using namespace talvera;
using namespace talvera::test;
using namespace std::chrono_literals;

namespace {

/// What the microphone hears is what the loudspeaker plays: both are one virtual device.
class SoundPlayerTest : public MicrophoneTest {
protected:
    void startListening() {
        startWithMicrophone();
        server.control({QStringLiteral("set-default-sink"), QString::fromStdString(server.feedOf())});
        connection();
        input.emplace(connection());
        player.emplace(connection(), files, QStringLiteral(TALVERA_START_SOUNDS));
        record(*input, ear);
        ASSERT_TRUE(ear.waitForFrames(4096));
    }
    void stopListening() {
        input->removeTap();
        input->stop();
    }
    /// Waits until something was heard and silence has come back.
    bool hears(double seconds) {
        return ear.waitUntil([seconds](const Ear::Heard& heard) {
            const auto& all = heard.samples;
            const auto loud = std::find_if(all.rbegin(), all.rend(), [](auto s) { return std::abs(s) > 50; });
            return loud != all.rend() &&
                   static_cast<double>(loud - all.rbegin()) > heard.format.sampleRate * seconds;
        });
    }

    SndFileReader files;
    Ear ear;
    std::optional<PulseAudioInput> input;
    std::optional<PulseSoundPlayer> player;
};

TEST(StartSounds, eachName_hasAShortSmallFileOfItsOwn) {
    SndFileReader files;
    std::map<std::vector<std::byte>, QString> known;
    qint64 all = 0;
    for (const auto& sound : StartSound::all()) {
        if (sound.name == u"Off")
            continue;
        const auto path = QStringLiteral(TALVERA_START_SOUNDS "/") + sound.name + QStringLiteral(".wav");
        const auto file = files.open(path);
        const auto format = file->processingFormat();
        const double seconds = static_cast<double>(file->length()) / format.sampleRate;
        EXPECT_GT(seconds, 0.05) << sound.name.toStdString();
        EXPECT_LT(seconds, 0.65) << sound.name.toStdString();
        EXPECT_EQ(format.channels, 1);
        EXPECT_LT(QFileInfo(path).size(), 40'000) << sound.name.toStdString();
        all += QFileInfo(path).size();

        const auto bytes = file->readAll();
        ASSERT_TRUE(known.emplace(bytes, sound.name).second) << sound.name.toStdString();
        std::vector<std::int16_t> samples(bytes.size() / 2);
        std::copy(bytes.begin(), bytes.end(), reinterpret_cast<std::byte*>(samples.data()));
        EXPECT_FALSE(isSilent(samples)) << sound.name.toStdString();
        const auto loudest = std::max_element(samples.begin(), samples.end());
        EXPECT_LT(*loudest, 24'000) << sound.name.toStdString(); // far from where it would be clipped
        EXPECT_EQ(samples.front(), 0) << sound.name.toStdString();
        EXPECT_EQ(samples.back(), 0) << sound.name.toStdString();
    }
    EXPECT_EQ(known.size(), 14U);
    EXPECT_LT(all, 600'000);
}

TEST(FakeSoundPlayer, sound_isTold) {
    FakeSoundPlayer player;
    QStringList played;
    player.onPlay = [&played](const QString& name) { played << name; };
    player.play(QStringLiteral("Ping"));
    EXPECT_EQ(played, QStringList{QStringLiteral("Ping")});
}

TEST_P(SoundPlayerTest, ping_isHeardWholeAndAtItsPitch) {
    startListening();
    player->play(QStringLiteral("Ping"));
    ASSERT_TRUE(hears(0.3));
    stopListening();
    const auto heard = spokenPart(ear.heard().samples);
    EXPECT_GT(static_cast<double>(heard.size()) / rate, 0.3);
    const std::vector<std::int16_t> middle(heard.begin() + 2000, heard.begin() + 8000);
    EXPECT_NEAR(frequencyOf(middle, rate), 1318.5, 15);
}

TEST_P(SoundPlayerTest, unknownNames_areSilent) {
    startListening();
    for (const auto* const unknown : {u"off", u"", u"Ding", u"../sounds/Ping", u"/etc/passwd"})
        player->play(QString::fromUtf16(unknown));
    ASSERT_TRUE(ear.waitForFrames(rate));
    stopListening();
    EXPECT_TRUE(isSilent(ear.heard().samples));
}

TEST_P(SoundPlayerTest, soundAfterSound_beginsAnewEachTime) {
    startListening();
    for (int i = 0; i < 20; ++i)
        player->play(i % 2 ? QStringLiteral("Glass") : QStringLiteral("Pop"));
    EXPECT_TRUE(hears(0.2));
    stopListening();
}

TEST_P(SoundPlayerTest, call_returnsAtOnce) {
    startListening();
    EXPECT_LT(shortestOf(5, [&] { player->play(QStringLiteral("Submarine")); }), 100ms);
    stopListening();
}

TEST_P(SoundPlayerTest, serverThatIsFrozen_holdsNobodyUp) {
    startListening();
    stopListening();
    server.freeze();
    EXPECT_LT(shortestOf(5, [&] { player->play(QStringLiteral("Tink")); }), 100ms);
    server.thaw();
}

TEST_P(SoundPlayerTest, serverThatDies_isSilenceAndNothingElse) {
    startListening();
    player->play(QStringLiteral("Submarine"));
    server.kill();
    EXPECT_TRUE(becomes(AuthorizationStatus::Denied));
    player->play(QStringLiteral("Submarine"));
    server.start();
    server.addMicrophone();
    EXPECT_TRUE(becomes(AuthorizationStatus::Authorized));
    player->play(QStringLiteral("Submarine"));
}

TEST_P(SoundPlayerTest, playerThatGoesWhileItPlays_leavesNothing) {
    startListening();
    player->play(QStringLiteral("Submarine"));
    player.reset();
    stopListening();
}

INSTANTIATE_TEST_SUITE_P(SoundServers, SoundPlayerTest,
                         testing::Values(SoundServer::Kind::PulseAudio, SoundServer::Kind::PipeWire),
                         nameOfKind);

} // namespace
