// SPDX-License-Identifier: MIT
// What is too long for one run of the recogniser is split, recognised piece by piece and joined again.
#include "DesktopTest.h"
#include "wordErrors.h"

using namespace talvera::test;

namespace {

class LongDictation : public DesktopTest {};

} // namespace

TEST_F(LongDictation, ofFortySeconds_isJoinedWithoutDoubledWords) {
    const QStringList sentences = {"Hello Anna, how are you?",
                                   "Please send the report tomorrow.",
                                   "The meeting starts at nine on Monday.",
                                   "We need milk and bread.",
                                   "Can you check the invoice today?",
                                   "Peter is at home this evening.",
                                   "Thank you for the long letter.",
                                   "The contract is ready.",
                                   "Where is the new document?",
                                   "Please call David this afternoon.",
                                   "I will bring the list to Maria.",
                                   "The weather is cold tonight.",
                                   "See you tomorrow.",
                                   "Write a short message to Julia."};
    std::vector<Samples> parts;
    for (const auto& sentence : sentences)
        parts.push_back(spoken(sentence));
    const auto speech = joined(parts, 0.7);
    const auto seconds = static_cast<double>(speech.size()) / 16000.0;
    ASSERT_TRUE(seconds > 36.0 && seconds < 48.0) << seconds; // two chunks

    startAgent({{"sourceLanguageCode", "en"}});
    Receiver editor(Receiver::Kind::Gtk);
    holdAndSay(speech);
    agent->await("state idle");
    ASSERT_TRUE(editor.waitFor([](const QString& text) { return !text.isEmpty(); })); // pasted whole
    const auto text = editor.text();

    // The tiny model errs in clips of this length: a sentence may be off, or one too many.
    const auto said = sentences.join(' ');
    EXPECT_LE(wordErrors(text, said), 8) << text.toStdString();
    qsizetype once = 0;
    for (const auto& sentence : sentences)
        once += text.count(sentence) == 1 ? 1 : 0;
    EXPECT_GE(once, sentences.size() - 2) << text.toStdString();
}
