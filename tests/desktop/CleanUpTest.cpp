// SPDX-License-Identifier: MIT
// What the language model writes of what was said, with the real server behind it and a model whose answer is
// known.
#include "DesktopTest.h"

using namespace talvera::test;

namespace {

class LanguageModelAtWork : public DesktopTest {
protected:
    static std::vector<pid_t> servers() { return processes("llama-server"); }
};

/// With a model that knows one answer.
class CleanUp : public LanguageModelAtWork {
protected:
    const QString answer = "So we meet at five.";
    const QString sentence = "Please send the report tomorrow.";
    const QJsonObject cleaning{
        {"aiCleanupEnabled", true}, {"cleanupTone", "conversational"}, {"sourceLanguageCode", "en"}};
};

/// With a model that understands what was said.
class MicroLanguageModel : public LanguageModelAtWork {
protected:
    /// Says this, and expects that in an editor of this kind.
    void expect(const QString& written, const Samples& speech, const QJsonObject& preferences,
                Receiver::Kind kind = Receiver::Kind::Gtk) {
        home.addLanguageModel(AgentHome::LanguageModel::Micro);
        startAgent(preferences);
        Receiver editor(kind);
        holdAndSay(speech);
        EXPECT_TRUE(editor.waitForText(written)) << editor.text().toStdString();
        agent->await("menu idle");
    }
};

} // namespace

TEST_F(CleanUp, speech_isTypedAsTheModelWritesIt) {
    home.addLanguageModel();
    startAgent(cleaning);
    Receiver editor(Receiver::Kind::Gtk);
    holdAndSay(spoken(sentence));
    EXPECT_TRUE(editor.waitForText(answer)) << editor.text().toStdString();
    agent->await("menu idle");
    EXPECT_EQ(servers().size(), 1) << "stays for the next one";
    holdAndSay(spoken(sentence));
    EXPECT_TRUE(editor.waitForText(answer + answer)) << editor.text().toStdString();
    agent->await("menu idle");
    EXPECT_EQ(agent->end(), 0);
    EXPECT_TRUE(eventually([] { return servers().empty(); })) << "ends with the agent";
    EXPECT_EQ(leftFiles(), QStringList());
}

TEST_F(CleanUp, speech_isPastedIntoAnotherApplication) {
    home.addLanguageModel();
    auto pasting = cleaning;
    pasting.insert("insertionMode", "paste");
    startAgent(pasting);
    Receiver editor(Receiver::Kind::Qt);
    holdAndSay(spoken(sentence));
    EXPECT_TRUE(editor.waitForText(answer)) << editor.text().toStdString();
    agent->await("menu idle");
}

TEST_F(CleanUp, agentThatIsKilled_leavesNoServer) {
    home.addLanguageModel();
    startAgent(cleaning);
    EXPECT_TRUE(eventually([] { return servers().size() == 1; })) << "started for the warm-up";
    agent->kill();
    EXPECT_TRUE(eventually([] { return servers().empty(); }));
}

TEST_F(CleanUp, modelPutThereAndTakenAwayMeanwhile_countsFromThenOn) {
    startAgent(cleaning);
    Receiver editor(Receiver::Kind::Gtk);
    holdAndSay(spoken(sentence));
    EXPECT_TRUE(editor.waitForText(sentence)) << editor.text().toStdString();
    agent->await("menu idle");
    EXPECT_TRUE(servers().empty());
    home.addLanguageModel();
    holdAndSay(spoken(sentence));
    EXPECT_TRUE(editor.waitForText(sentence + answer)) << editor.text().toStdString();
    agent->await("menu idle");
    home.removeLanguageModel();
    EXPECT_TRUE(eventually([] { return servers().empty(); }));
    holdAndSay(spoken(sentence));
    EXPECT_TRUE(editor.waitForText(sentence + answer + sentence)) << editor.text().toStdString();
    agent->await("menu idle");
}

TEST_F(MicroLanguageModel, mistakeInASentence_isCorrectedAndTyped) {
    expect("Write an important letter to Anna.", spoken("Write a important letter to Anna."),
           {{"aiCleanupEnabled", true}, {"cleanupTone", "conversational"}, {"sourceLanguageCode", "en"}});
}

TEST_F(MicroLanguageModel, englishSpeech_isTypedInGerman) {
    expect("Wir brauchen Butter und Papier.", spoken("We need butter and paper."),
           {{"targetLanguageCode", "de"}, {"sourceLanguageCode", "en"}});
}

TEST_F(MicroLanguageModel, englishSpeech_isPastedInGerman) {
    expect("Wo ist das wichtige Dokument?", spoken("Where is the important document?"),
           {{"targetLanguageCode", "de"}, {"sourceLanguageCode", "en"}, {"insertionMode", "paste"}},
           Receiver::Kind::Qt);
}

TEST_F(MicroLanguageModel, russianSpeechThatNobodyAnnounced_isTypedInGerman) {
    expect("Bitte schicken Sie den Bericht.", spoken("Пожалуйста, отправьте отчёт.", "ru"),
           {{"targetLanguageCode", "de"}});
}
