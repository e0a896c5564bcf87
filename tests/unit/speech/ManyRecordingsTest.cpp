// SPDX-License-Identifier: MIT
//
// What is recognised ahead gives the text that would have come without, to the last character.
#include "EarlyRecognitionFixture.h"

#include <random>

using namespace talvera;
using namespace talvera::test;

namespace {

/// Recordings of all lengths, with pauses of all lengths, released at any moment, while tools are slow, die,
/// and settings and models change.
void play(std::mt19937& random, EarlyRecognition& early, FakeChildProcess& tool, SimulatedMainActor& actor,
          const std::function<void(std::size_t, std::int16_t)>& say, std::size_t most) {
    ToolRun run;
    run.duration = std::chrono::milliseconds(random() % 300);
    tool.setRuns({run});
    for (auto left = random() % most; left > 0;) {
        const auto length = std::min<std::size_t>(left, random() % (most / 5) + 1);
        const bool isPause = random() % 4 == 0;
        say(length, static_cast<std::int16_t>(isPause ? random() % 601 : 601 + random() % 30000));
        left -= length;
        actor.advance(std::chrono::milliseconds(random() % 200));
        if (random() % 40 == 0)
            tool.killPrepared();
        if (random() % 200 == 0)
            early.end();
    }
}

class ManyShortRecordings : public EarlyRecognitionTest {
protected:
    // A fiftieth of what they are, and the silence that is trimmed as long as ever.
    ManyShortRecordings()
        : EarlyRecognitionTest({0.5, 0.04, 0.56}) {}
};

TEST_F(ManyShortRecordings, threeThousand_giveTheirTextsToTheLastCharacter) {
    std::mt19937 random(20);
    int ahead = 0;
    for (int recording = 0; recording < 3000 && !HasFailure(); ++recording) {
        SCOPED_TRACE("recording " + std::to_string(recording));
        begin();
        play(
            random, early, tool, actor, [this](auto samples, auto sample) { say(samples, sample); }, 60000);
        if (random() % 20 == 0)
            files.write(model, "model " + QByteArray::number(recording));
        ahead += chunksAhead();
        expectSameTexts(random() % 20 == 0 ? "de" : "en");
        tool.forgetRequests();
    }
    EXPECT_GT(ahead, 2000) << "hardly anything was done ahead";
}

class ManyRecordings : public EarlyRecognitionTest {};

TEST_F(ManyRecordings, ofUsualLengths_giveTheirTextsToTheLastCharacter) {
    std::mt19937 random(21);
    int ahead = 0;
    for (int recording = 0; recording < 40 && !HasFailure(); ++recording) {
        SCOPED_TRACE("recording " + std::to_string(recording));
        begin();
        play(
            random, early, tool, actor, [this](auto samples, auto sample) { say(samples, sample); },
            120 * second);
        ahead += chunksAhead();
        expectSameTexts();
        tool.forgetRequests();
    }
    EXPECT_GT(ahead, 20);
}

} // namespace
