// SPDX-License-Identifier: MIT
#include "PrintQt.h"
#include "ServedModel.h"
#include "SimulatedMainActor.h"
#include "Told.h"

#include <gtest/gtest.h>

using namespace talvera;
using namespace talvera::test;
using Reason = LanguageModel::UnavailableReason;

namespace {

class LlamaLanguageModelTest : public testing::Test {
protected:
    void makeHome(LlamaLanguageModel::Options options = {}) {
        home.emplace(QStringLiteral(TALVERA_SCRIPTED_LLAMA_SERVER), std::move(options));
    }
    void script(const QByteArray& lines) {
        QFile file(home->at("m.gguf.script"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(lines);
    }
    Told ask() {
        Told told;
        const auto session = home->model->makeSession("Reply.", LanguageModel::Guardrails::Default);
        session->streamResponse("so um", told.listener());
        home->settle();
        EXPECT_EQ(told.ends, 1);
        return told;
    }
    std::optional<ServedModel> home;
    const QByteArray meet = R"({"pieces":["So ","we meet."],"failure":null})"
                            "\n";
};

TEST_F(LlamaLanguageModelTest, folder_isMadeAndItsModelsAreNoticed) {
    makeHome();
    EXPECT_TRUE(QFile::exists(home->at("")));
    EXPECT_EQ(home->model->unavailableReason(), Reason::IntelligenceOff);
    EXPECT_TRUE(home->model->supportedLanguages().isEmpty());
    home->put();
    EXPECT_FALSE(home->model->unavailableReason());
    EXPECT_EQ(home->model->supportedLanguages(), (QStringList{"en", "de"}));
    home->takeAway();
    EXPECT_EQ(home->model->unavailableReason(), Reason::IntelligenceOff);
}

TEST_F(LlamaLanguageModelTest, folderThatIsTakenAway_comesBackWithThePress) {
    makeHome();
    home->put();
    QDir(home->at("")).removeRecursively();
    EXPECT_TRUE(eventually([&] { return home->model->unavailableReason() == Reason::IntelligenceOff; }));
    home->model->prepare();
    home->put();
    EXPECT_FALSE(home->model->unavailableReason());
}

TEST_F(LlamaLanguageModelTest, ofSeveralModels_theChosenOneCounts) {
    makeHome();
    home->put("a.gguf");
    home->put("b.gguf");
    EXPECT_EQ(home->model->unavailableReason(), Reason::IntelligenceOff) << "nobody has chosen";
    EXPECT_EQ(home->model->offers(),
              (std::vector<LanguageModelChoice::Offer>{{"a.gguf", "Talvera test model"},
                                                       {"b.gguf", "Talvera test model"}}));
    home->turn(); // in which what has changed so far is told
    int changes = 0;
    const auto subscription = home->model->observe([&changes] { ++changes; });
    home->model->choose("b.gguf");
    EXPECT_EQ(changes, 0) << "told in a turn of its own";
    home->turn();
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(home->model->chosen(), "b.gguf");
    EXPECT_FALSE(home->model->unavailableReason());
    home->start();
    EXPECT_EQ(home->model->chosen(), "b.gguf") << "the choice lasts";
    EXPECT_FALSE(home->model->missing());
    EXPECT_EQ(home->model->automatic(), "");
    home->takeAway("b.gguf");
    EXPECT_EQ(home->model->unavailableReason(), Reason::IntelligenceOff)
        << "the other one isn't taken instead";
    EXPECT_EQ(home->model->chosen(), "");
    EXPECT_EQ(home->model->missing(), (LanguageModelChoice::Offer{"b.gguf", "b.gguf"}));
    EXPECT_EQ(home->model->automatic(), "a.gguf");
    home->model->choose({});
    EXPECT_EQ(home->model->chosen(), "a.gguf");
    home->model->choose("a.gguf");
    home->turn();
    int changesOfAnother = 0;
    const auto another = home->model->observe([&changesOfAnother] { ++changesOfAnother; });
    home->put("c.gguf");
    home->turn();
    EXPECT_EQ(changesOfAnother, 1) << "who shows the offers hears of one more";
}

TEST_F(LlamaLanguageModelTest, choiceBetweenModelsThatAreAlike_isTold) {
    makeHome();
    home->put("a.gguf");
    home->put("b.gguf");
    home->model->choose("a.gguf");
    home->turn();
    int changes = 0;
    const auto subscription = home->model->observe([&changes] { ++changes; });
    home->model->choose("b.gguf");
    home->turn();
    EXPECT_EQ(changes, 1);
    home->model->choose("b.gguf");
    home->turn();
    EXPECT_EQ(changes, 1);
}

TEST_F(LlamaLanguageModelTest, folderThatIsTakenAway_comesBackWithALookToo) {
    makeHome();
    QDir(home->at("")).removeRecursively();
    home->model->look();
    home->put();
    EXPECT_EQ(home->model->chosen(), "m.gguf");
}

TEST_F(LlamaLanguageModelTest, noteInTheFolder_saysWhatTheProgramTells) {
    makeHome();
    EXPECT_EQ(home->model->makeFolder("Put a model here: größer."), QDir::cleanPath(home->at("")));
    QFile note(home->at("README.txt"));
    ASSERT_TRUE(note.open(QIODevice::ReadOnly));
    EXPECT_EQ(QString::fromUtf8(note.readAll()), "Put a model here: größer.");
}

TEST_F(LlamaLanguageModelTest, withoutTheServer_theMachineIsNotEligible) {
    home.emplace(QString());
    home->put();
    EXPECT_EQ(home->model->unavailableReason(), Reason::DeviceNotEligible);
    EXPECT_EQ(ask().failure->kind, AIFailure::Case::ModelLoading);
}

TEST_F(LlamaLanguageModelTest, memory_decidesBeforeAnythingIsLoaded) {
    std::optional<qint64> memory = 1 << 20;
    LlamaLanguageModel::Options options;
    options.availableMemory = [&memory] { return memory; };
    makeHome(options);
    home->put();
    script(meet);
    EXPECT_EQ(home->model->unavailableReason(), Reason::DeviceNotEligible);
    home->model->prepare();
    EXPECT_TRUE(home->commandLine().isEmpty());
    memory.reset();
    EXPECT_FALSE(home->model->unavailableReason()) << "a kernel that doesn't tell is no reason";
    memory = LlamaLanguageModel::memoryOfThisMachine();
    ASSERT_TRUE(memory);
    EXPECT_FALSE(home->model->unavailableReason());
    EXPECT_EQ(ask().text(), "So we meet.");
    memory = 1 << 20;
    EXPECT_FALSE(home->model->unavailableReason()) << "the one that runs has its memory";
}

TEST_F(LlamaLanguageModelTest, press_startsTheServerWhichThenAnswers) {
    makeHome();
    home->put();
    script(meet);
    home->turn();
    EXPECT_TRUE(home->commandLine().isEmpty()) << "nothing runs before";
    home->model->prepare();
    EXPECT_FALSE(home->model->unavailableReason());
    EXPECT_TRUE(eventually([&] { return home->model->isLoaded(); }));
    const auto arguments = home->commandLine();
    for (const auto* argument : {"--offline", "--no-ui", "--no-slots", "--cache-ram", "-np", "--reasoning"})
        EXPECT_TRUE(arguments.contains(QLatin1String(argument))) << argument;
    home->model->prepare();
    EXPECT_EQ(home->commandLine(), arguments) << "the same still runs";
    EXPECT_EQ(ask().text(), "So we meet.");
}

TEST_F(LlamaLanguageModelTest, serverThatNobodyAsks_endsAfterItsTime) {
    LlamaLanguageModel::Options options;
    options.idle = seconds(0.5);
    makeHome(options);
    home->put();
    script(meet + meet);
    EXPECT_EQ(ask().text(), "So we meet.");
    EXPECT_TRUE(eventually([&] { return !home->model->isLoaded() && home->commandLine().isEmpty(); }));
    EXPECT_FALSE(QFile::exists(home->directories.temporary + "/llm.sock"));
    EXPECT_FALSE(home->model->unavailableReason()) << "it can answer again";
    QFile::remove(home->directories.temporary + "/requests.jsonl");
    EXPECT_EQ(ask().text(), "So we meet.");
}

TEST_F(LlamaLanguageModelTest, idleTime_isTenMinutes) {
    makeHome();
    home->put();
    script(meet);
    SimulatedMainActor clock;
    LlamaLanguageModel model({clock, home->files, home->preferences, home->directories, home->console});
    model.prepare();
    EXPECT_TRUE(eventually([&] {
        clock.settle();
        return model.isLoaded();
    }));
    clock.advance(seconds(599));
    EXPECT_TRUE(model.isLoaded());
    EXPECT_FALSE(home->commandLine().isEmpty());
    clock.advance(seconds(1));
    EXPECT_FALSE(model.isLoaded());
    EXPECT_TRUE(eventually([&] { return home->commandLine().isEmpty(); }));
}

TEST_F(LlamaLanguageModelTest, server_endsWithTheAgent) {
    makeHome();
    home->put();
    script(meet);
    home->model->prepare();
    // A process that has just become another program shows no command line for a moment.
    EXPECT_TRUE(eventually([&] { return !home->commandLine().isEmpty(); }));
    home->model.reset();
    EXPECT_TRUE(home->commandLine().isEmpty());
    EXPECT_FALSE(QFile::exists(home->directories.temporary + "/llm.sock"));
}

TEST_F(LlamaLanguageModelTest, modelThatCantBeLoaded_isNotTriedAgainUntilItIsAnother) {
    makeHome();
    home->put();
    script("dies\n");
    EXPECT_EQ(ask().failure->kind, AIFailure::Case::ModelLoading);
    EXPECT_EQ(home->model->unavailableReason(), Reason::DeviceNotEligible);
    home->takeAway();
    home->put();
    script(meet);
    EXPECT_FALSE(home->model->unavailableReason());
    EXPECT_EQ(ask().text(), "So we meet.");
}

TEST_F(LlamaLanguageModelTest, serverThatDoesNotComeUp_isNotWaitedForLonger) {
    LlamaLanguageModel::Options options;
    options.loading = seconds(0.5);
    makeHome(options);
    home->put();
    script("hangs\n");
    EXPECT_EQ(ask().failure->kind, AIFailure::Case::ModelLoading);
    EXPECT_FALSE(home->model->unavailableReason());
}

TEST_F(LlamaLanguageModelTest, serverThatIsKilled_isStartedAgainForTheNextRequest) {
    makeHome();
    home->put();
    script(meet);
    EXPECT_EQ(ask().text(), "So we meet.");
    home->killServer();
    EXPECT_TRUE(eventually([&] { return !home->model->isLoaded(); }));
    EXPECT_FALSE(home->model->unavailableReason());
    EXPECT_EQ(ask().text(), "So we meet.");
}

TEST_F(LlamaLanguageModelTest, serverThatCantBeReached_isReplaced) {
    makeHome();
    home->put();
    script(meet);
    EXPECT_EQ(ask().text(), "So we meet.");
    const auto before = home->server();
    QFile::remove(home->directories.temporary + "/llm.sock");
    EXPECT_EQ(ask().text(), "So we meet.");
    EXPECT_NE(home->server(), before);
}

TEST_F(LlamaLanguageModelTest, modelThatIsTakenAway_letsItsServerGo) {
    makeHome();
    home->put();
    script(meet);
    EXPECT_EQ(ask().text(), "So we meet.");
    home->takeAway();
    EXPECT_TRUE(eventually([&] { return home->commandLine().isEmpty(); }));
    EXPECT_EQ(ask().failure->kind, AIFailure::Case::ModelLoading);
}

} // namespace
