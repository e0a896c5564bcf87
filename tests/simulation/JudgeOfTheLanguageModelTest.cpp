// SPDX-License-Identifier: MIT
//
// What the judge knows of texts that the language model writes.
#include "JudgeFixture.h"

using namespace talvera;
using namespace talvera::simulation;

namespace {

class JudgeOfTheLanguageModel : public JudgeFixture {
protected:
    static QStringList withModel(const QStringList& things) {
        return QStringList{"0 a language model is there, and hears nothing",
                           "0 first it hears \"one two\" within 1 s",
                           "0 then it hears \"three\" within 1 s"} +
               things;
    }
    const QStringList cleanUp =
        withModel({"0 set aiCleanupEnabled to true", "0 first the model writes \"One, two.\" within 1 s"}) +
        dictation;
    const QStringList translation = withModel({"0 set targetLanguageCode to \"de\""}) + dictation;

    void forgeRequest(const char* input) { forge("request", {{"instructions", ""}, {"input", input}}); }
    const Fault refused = Fault::LanguageRefused;
};

TEST_F(JudgeOfTheLanguageModel, answers_areNotComplainedOf) {
    EXPECT_EQ(verdict(cleanUp), QStringLiteral("nothing"));
    EXPECT_EQ(world().story({"type"}), QStringList("type One, two."));
}

TEST_F(JudgeOfTheLanguageModel, languageThatIsRefused_isTranslatedInTwoHops) {
    EXPECT_EQ(verdict(translation + QStringList{"0 first the model refuses the language",
                                                "0 then the model writes \"drei\" within 1 s"}),
              QStringLiteral("nothing"));
    EXPECT_EQ(world().story({"type"}), QStringList("type drei"));
    EXPECT_TRUE(trial.faults().tally().counts.at(static_cast<std::size_t>(refused)) > 0);
}

TEST_F(JudgeOfTheLanguageModel, answerThatBreaksOff_isNotComplainedOf) {
    EXPECT_EQ(
        verdict(translation +
                QStringList{"0 set insertionMode to \"paste\"",
                            "0 first the model writes \"eins zwei drei vier fünf sechs sieben\" within 1 s, "
                            "but breaks off after 30 letters"}),
        QStringLiteral("nothing"));
    EXPECT_EQ(world().story({"type", "paste"}), QStringList());
}

TEST_F(JudgeOfTheLanguageModel, answerForTheClipboard_comesThereInPartsAndThenWhole) {
    EXPECT_EQ(
        verdict(translation + QStringList{"0 first the model writes \"drei\" within 1 s", "0 no text field"}),
        QStringLiteral("nothing"));
    EXPECT_EQ(world().story({"clipboard"}), QStringList({"clipboard drei", "clipboard drei"}));
}

TEST_F(JudgeOfTheLanguageModel, answerThatTheClipboardDoesNotTake_isCalledLostInPartsAndThenAsAWhole) {
    EXPECT_EQ(verdict(translation + QStringList{"0 first the model writes \"drei\" within 1 s",
                                                "0 no text field", "0 the clipboard takes no text"}),
              QStringLiteral("nothing"));
    EXPECT_EQ(world().story({"hud"}).filter("The text is lost").size(), 2);
}

TEST_F(JudgeOfTheLanguageModel, answerThatComesToTheClipboardOnceMore_isNoticed) {
    sabotage = [this] { at(10, [this] { world().pasteboard.onText(QStringLiteral("drei")); }); };
    EXPECT_EQ(
        verdict(translation + QStringList{"0 first the model writes \"drei\" within 1 s", "0 no text field"}),
        QStringLiteral("delivered without a reason"));
}

TEST_F(JudgeOfTheLanguageModel, answerThatIsRefused_leavesWhatWasSaid) {
    EXPECT_EQ(verdict(translation + QStringList{"0 first the model won't say it"}),
              QStringLiteral("nothing"));
    EXPECT_EQ(world().story({"type"}), QStringList("type one two"));
}

TEST_F(JudgeOfTheLanguageModel, requestWithoutADictation_isNoticed) {
    sabotage = [this] { at(1, [this] { forgeRequest("<raw></raw>"); }); };
    EXPECT_EQ(verdict({}), QStringLiteral("the language model was asked for nothing that is wanted"));
}

TEST_F(JudgeOfTheLanguageModel, requestForATextThatIsWantedAsItIs_isNoticed) {
    sabotage = [this] { at(2.5, [this] { forgeRequest("<raw></raw>"); }); };
    EXPECT_EQ(verdict(slowDictation),
              QStringLiteral("the language model was asked for nothing that is wanted"));
}

TEST_F(JudgeOfTheLanguageModel, requestForAnotherText_isNoticed) {
    sabotage = [this] {
        world().languageModel.onRequest = [this](const test::ModelRequestSeen&) {
            forgeRequest("<raw>four</raw>");
        };
    };
    EXPECT_EQ(verdict(cleanUp), QStringLiteral("the language model was given another text than was said"));
}

TEST_F(JudgeOfTheLanguageModel, modelThatIsNotAsked_isNoticed) {
    sabotage = [this] { hide("request"); };
    EXPECT_EQ(verdict(cleanUp), QStringLiteral("the language model was asked  times"));
}

TEST_F(JudgeOfTheLanguageModel, failureWithoutAWord_isNoticed) {
    sabotage = [this] { hide("hud"); };
    EXPECT_EQ(verdict(translation + QStringList{"0 first the model won't say it"}),
              QStringLiteral("no notice "));
}

} // namespace
