// SPDX-License-Identifier: MIT
// What is too long for one run of the recogniser is split, recognised piece by piece and joined again.
#include "DesktopTest.h"
#include "wordErrors.h"

using namespace talvera::test;

namespace {

class LongDictation : public DesktopTest {};

} // namespace

TEST_F(LongDictation, ofFortySeconds_isJoinedWithoutDoubledWords) {
    const auto speech = fortySecondsOfSpeech();
    const auto seconds = static_cast<double>(speech.size()) / 16000.0;
    ASSERT_TRUE(seconds > 36.0 && seconds < 48.0) << seconds; // two chunks

    startAgent({{"sourceLanguageCode", "en"}});
    Receiver editor(Receiver::Kind::Gtk);
    holdAndSay(speech);
    agent->await("menu idle");
    ASSERT_TRUE(editor.waitFor([](const QString& text) { return !text.isEmpty(); })); // pasted whole
    const auto text = editor.text();

    // The tiny model errs in clips of this length: a sentence may be off, or one too many.
    const auto sentences = sentencesOfFortySeconds();
    const auto said = sentences.join(' ');
    EXPECT_LE(wordErrors(text, said), 8) << text.toStdString();
    EXPECT_GE(countedOnce(sentences, text), sentences.size() - 2) << text.toStdString();
}
