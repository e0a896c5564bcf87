// SPDX-License-Identifier: MIT
// What the language model writes of what was said, with the real server behind it and a model whose answer is
// known.
#include "DesktopTest.h"

using namespace talvera::test;

namespace {

class CleanUp : public DesktopTest {
protected:
    const QString answer = "So we meet at five.";
    const QString sentence = "Please send the report tomorrow.";
    const QJsonObject cleaning{
        {"aiCleanupEnabled", true}, {"cleanupTone", "conversational"}, {"sourceLanguageCode", "en"}};

    static std::vector<pid_t> servers() { return processes("llama-server"); }
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
