// SPDX-License-Identifier: MIT
// Servers that the user runs: when they are asked, what is offered of them, and what is told of their state.
#include "PrintQt.h"
#include "Told.h"
#include "UserServerHome.h"

#include <QNetworkProxy>

#include <gtest/gtest.h>

using namespace talvera;
using namespace talvera::test;
using Case = AIFailure::Case;
using Offer = LanguageModelChoice::Offer;
using Offers = std::vector<Offer>;
using Reason = LanguageModel::UnavailableReason;

namespace {

const Offer ollamaOffer{"ollama/m", "m (Ollama)"};
const Offer llamaOffer{"llama-server/m", "m (llama-server)"};

class ChosenLanguageModelTest : public testing::Test {
protected:
    ChosenLanguageModelTest() { home.start(); }

    LanguageModel& model() { return *home.model; }
    LanguageModelChoice& choice() { return *home.model; }

    void choose(const Offer& offer) {
        choice().choose(offer.id);
        home.settle();
    }
    Told ask() {
        Told told;
        const auto session = model().makeSession("Reply.", LanguageModel::Guardrails::Default);
        session->streamResponse("so um", told.listener());
        EXPECT_TRUE(eventually([&told] { return told.ends > 0; }));
        home.settle();
        EXPECT_EQ(told.ends, 1);
        return told;
    }
    void expectFailure(const Told& told, Case kind) {
        ASSERT_TRUE(told.failure);
        EXPECT_EQ(rawValue(told.failure->kind), rawValue(kind));
    }

    UserServerHome home;
};

TEST_F(ChosenLanguageModelTest, serverThatNobodyHasChosen_isNotAskedByAPress) {
    model().prepare();
    home.settle();
    home.files.put();
    model().prepare();
    home.settle();
    EXPECT_EQ(home.ollama.requests, QList<QByteArray>());
    EXPECT_EQ(home.llama.requests, QList<QByteArray>());
}

TEST_F(ChosenLanguageModelTest, look_offersWhatServersHaveBesideTheFiles) {
    home.files.put();
    home.ollama.models = {ScriptedUserServer::model("zebra:7b"), ScriptedUserServer::model("alpaca:1b")};
    home.llama.models = {ScriptedUserServer::model("/models/heath.gguf")};
    int changes = 0;
    const auto subscription = model().observe([&changes] { ++changes; });
    home.look();
    EXPECT_GE(changes, 1);
    EXPECT_EQ(choice().offers(), (Offers{{"m.gguf", "Talvera test model"},
                                         {"ollama/alpaca:1b", "alpaca:1b (Ollama)"},
                                         {"ollama/zebra:7b", "zebra:7b (Ollama)"},
                                         {"llama-server//models/heath.gguf", "heath.gguf (llama-server)"}}));
    EXPECT_EQ(choice().chosen(), "m.gguf") << "what is merely offered isn't used";
    EXPECT_EQ(home.ollama.requests, QList<QByteArray>{"GET /api/tags HTTP/1.1"});
    EXPECT_EQ(home.llama.requests, (QList<QByteArray>{"GET /health HTTP/1.1", "GET /v1/models HTTP/1.1"}));
    EXPECT_EQ(home.ollama.loads.size() + home.ollama.chats.size(), 0);
}

TEST_F(ChosenLanguageModelTest, modelsOfAnotherComputer_areNotOffered) {
    auto remote = ScriptedUserServer::model("far:1b");
    remote.insert("remote_host", "https://example.com:443");
    home.ollama.models = {remote, ScriptedUserServer::model("large:671b-cloud"),
                          ScriptedUserServer::model("huge:cloud"), ScriptedUserServer::model("near:1b")};
    home.look();
    EXPECT_EQ(choice().offers(), (Offers{{"ollama/near:1b", "near:1b (Ollama)"}, llamaOffer}));
}

TEST_F(ChosenLanguageModelTest, modelsThatCantChat_areNotOffered) {
    home.ollama.models = {ScriptedUserServer::model("embed", "nomic-bert"), ScriptedUserServer::model("m")};
    home.look();
    EXPECT_EQ(choice().offers(), (Offers{ollamaOffer, llamaOffer}));
}

TEST_F(ChosenLanguageModelTest, otherProgramsOnThesePorts_areNoServers) {
    home.llama.models = {QJsonObject{{"id", "m"}, {"owned_by", "somebody"}}};
    home.ollama.models = {};
    home.look();
    EXPECT_EQ(choice().offers(), Offers());
    for (const auto* answer :
         {"HTTP/1.1 200 OK\r\nContent-Length: 6\r\n\r\n<html>", "garbage\r\n\r\n",
          "HTTP/1.1 401 X\r\nContent-Length: 0\r\n\r\n", "HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\n[]",
          "HTTP/1.1 503 X\r\nContent-Length: 5\r\n\r\nBusy."}) {
        home.llama.everyAnswer = home.ollama.everyAnswer = answer;
        home.look();
        EXPECT_EQ(choice().offers(), Offers()) << answer;
        EXPECT_EQ(model().unavailableReason(), Reason::DeviceNotEligible) << "there is no server of ours";
    }
}

TEST_F(ChosenLanguageModelTest, redirection_isNotFollowed) {
    const auto elsewhere =
        "HTTP/1.1 302 Found\r\nLocation: http://127.0.0.1:" + QByteArray::number(home.ollama.port()) +
        "/api/tags\r\nContent-Length: 0\r\n\r\n";
    home.llama.everyAnswer = elsewhere;
    home.look();
    EXPECT_EQ(home.llama.requests.size(), 1);
    EXPECT_EQ(home.ollama.requests.size(), 1) << "its own";
    choose(ollamaOffer);
    home.ollama.everyAnswer = elsewhere;
    const auto before = home.ollama.requests.size();
    expectFailure(ask(), Case::Other);
    EXPECT_EQ(home.ollama.requests.size(), before + 2) << "the chat, and what has become of the server";
}

TEST_F(ChosenLanguageModelTest, chosenModel_answersAndIsStillChosenAfterARestart) {
    for (const auto& [offer, server] :
         {std::pair(ollamaOffer, &home.ollama), std::pair(llamaOffer, &home.llama)}) {
        home.look();
        choose(offer);
        home.start();
        EXPECT_EQ(model().unavailableReason(), Reason::ModelNotReady) << "not known yet";
        home.settle();
        EXPECT_FALSE(model().unavailableReason());
        EXPECT_EQ(choice().chosen(), offer.id);
        EXPECT_FALSE(choice().missing());
        server->answers.push_back({QStringList{"So ", "we meet."}});
        EXPECT_EQ(ask().text(), "So we meet.");
        EXPECT_EQ(server->chats.last()["model"].toString(), "m");
    }
}

TEST_F(ChosenLanguageModelTest, proxy_isNotAsked) {
    QNetworkProxy::setApplicationProxy({QNetworkProxy::HttpProxy, "127.0.0.1", 1});
    home.look();
    QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
    EXPECT_EQ(choice().offers().size(), 2);
}

TEST_F(ChosenLanguageModelTest, choiceOfAFile_leavesTheServersAlone) {
    home.files.put();
    choose(ollamaOffer);
    choose({"m.gguf", {}});
    EXPECT_EQ(choice().chosen(), "m.gguf");
    const auto before = home.ollama.requests;
    model().prepare();
    home.settle();
    EXPECT_EQ(home.ollama.requests, before);
    choose(ollamaOffer);
    choose({});
    EXPECT_EQ(choice().chosen(), "m.gguf") << "the choice is taken back";
}

TEST_F(ChosenLanguageModelTest, serverThatIsGone_isMissedUntilItIsBack) {
    choose(ollamaOffer);
    EXPECT_FALSE(model().unavailableReason());
    int changes = 0;
    const auto subscription = model().observe([&changes] { ++changes; });
    home.ollama.stop();
    model().prepare(); // the one question of a press
    home.settle();
    EXPECT_TRUE(eventually([&] { return model().unavailableReason() == Reason::IntelligenceOff; }));
    home.settle();
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(choice().chosen(), "");
    EXPECT_EQ(choice().missing(), ollamaOffer);
    EXPECT_TRUE(model().supportedLanguages().isEmpty());
    expectFailure(ask(), Case::Off);
    home.ollama.listen();
    model().prepare();
    EXPECT_TRUE(eventually([&] { return !model().unavailableReason(); }));
    home.settle();
    EXPECT_EQ(changes, 2);
    home.ollama.answers.push_back({QStringList{"So we meet."}});
    EXPECT_EQ(ask().text(), "So we meet.");
}

TEST_F(ChosenLanguageModelTest, modelThatTheServerHasNoMore_isMissedAndNothingIsToldToTheServer) {
    for (const auto& [offer, server] :
         {std::pair(ollamaOffer, &home.ollama), std::pair(llamaOffer, &home.llama)}) {
        choose(offer);
        server->models = {ScriptedUserServer::model("another")};
        model().prepare();
        home.settle();
        EXPECT_EQ(model().unavailableReason(), Reason::IntelligenceOff);
        EXPECT_EQ(choice().missing(), offer);
        expectFailure(ask(), Case::Off);
        EXPECT_TRUE(server->chats.isEmpty());
    }
}

TEST_F(ChosenLanguageModelTest, serverThatGoesUnnoticed_isOffForTheOneThatAsks) {
    choose(llamaOffer);
    home.llama.stop();
    EXPECT_FALSE(model().unavailableReason());
    expectFailure(ask(), Case::Off);
    EXPECT_TRUE(eventually([&] { return model().unavailableReason() == Reason::IntelligenceOff; }))
        << "and known then";
}

TEST_F(ChosenLanguageModelTest, serverThatLoads_isSaidToUntilItHas) {
    home.llama.isLoading = true;
    choose(llamaOffer);
    EXPECT_EQ(model().unavailableReason(), Reason::ModelNotReady);
    EXPECT_EQ(choice().chosen(), llamaOffer.id);
    EXPECT_FALSE(choice().missing());
    EXPECT_EQ(choice().offers(), Offers{llamaOffer}) << "it is still the chosen one";
    expectFailure(ask(), Case::ModelLoading);
    EXPECT_TRUE(home.llama.chats.isEmpty());
    home.llama.isLoading = false;
    model().prepare();
    home.settle();
    EXPECT_FALSE(model().unavailableReason());
    home.llama.answers.push_back({QStringList{"So we meet."}});
    EXPECT_EQ(ask().text(), "So we meet.");
}

TEST_F(ChosenLanguageModelTest, pressForAModelOfOllamas_hasItLoadedAsTheChatNeedsIt) {
    choose(ollamaOffer);
    EXPECT_TRUE(home.ollama.loads.isEmpty()) << "nobody is about to need it";
    model().prepare();
    home.settle();
    ASSERT_EQ(home.ollama.loads.size(), 1);
    home.ollama.answers.push_back({QStringList{"So we meet."}});
    ask();
    ASSERT_EQ(home.ollama.chats.size(), 1);
    const auto chat = home.ollama.chats.front();
    for (const auto* key : {"model", "options", "think", "truncate", "shift", "stream"})
        EXPECT_TRUE(home.ollama.loads.front().value(QLatin1String(key)) == chat.value(QLatin1String(key)))
            << key;
    EXPECT_GE(chat["options"].toObject()["num_ctx"].toInt(), 16384);
    EXPECT_TRUE(chat["options"].toObject()["seed"].isDouble());
    EXPECT_FALSE(chat["think"].toBool(true));
    for (const auto* key : {"temperature", "top_p", "top_k", "num_predict"})
        EXPECT_FALSE(chat["options"].toObject().contains(QLatin1String(key))) << key;
}

TEST_F(ChosenLanguageModelTest, modelThatIsBeingLoaded_isNotLoadedOnceMore) {
    choose(ollamaOffer);
    home.ollama.holdsLoads = true;
    model().prepare();
    EXPECT_TRUE(eventually([&] { return home.ollama.loads.size() == 1; }));
    const auto before = home.ollama.requests.size();
    model().prepare();
    model().prepare(); // whose question comes once the one before has been answered
    EXPECT_TRUE(eventually([&] { return home.ollama.requests.size() >= before + 2; }));
    EXPECT_EQ(home.ollama.loads.size(), 1);
    home.model.reset();
    EXPECT_TRUE(eventually([&] { return home.ollama.isIdle(); })) << "nothing stays open";
}

TEST_F(ChosenLanguageModelTest, familyOfAModel_tellsItsLanguages) {
    const auto languagesOf = [this](const QString& name) {
        home.ollama.models = {ScriptedUserServer::model(name)};
        choose({"ollama/" + name, {}});
        return model().supportedLanguages();
    };
    EXPECT_EQ(languagesOf("smollm2:135m"), QStringList{"en"});
    EXPECT_EQ(languagesOf("llama3.2:3b"), QString("en de fr it pt hi es th").split(' '));
    EXPECT_EQ(languagesOf("someone/Granite3.1-dense:2b"),
              QString("en de es fr ja pt ar cs it ko nl zh").split(' '));
    EXPECT_TRUE(languagesOf("unheard-of").contains("uk"));
    home.llama.models = {ScriptedUserServer::model("/m/SmolLM2-1.7B-Instruct-Q4_K_M.gguf")};
    choose({"llama-server//m/SmolLM2-1.7B-Instruct-Q4_K_M.gguf", {}});
    EXPECT_EQ(model().supportedLanguages(), QStringList{"en"});
}

TEST_F(ChosenLanguageModelTest, preferencesThatNameNothing_areAFileThatIsMissing) {
    for (const auto* id : {"ollama/", "llama-server/", "/etc/passwd", "ollama"}) {
        choice().choose(id);
        home.settle();
        EXPECT_EQ(choice().missing(), (Offer{id, id}));
        EXPECT_TRUE(model().unavailableReason());
    }
    EXPECT_EQ(home.ollama.requests, QList<QByteArray>());
}

TEST_F(ChosenLanguageModelTest, failuresOfChats_areWhatTheServersSay) {
    using Answer = ScriptedUserServer::Answer;
    const auto failureOf = [this](const Offer& offer, ScriptedUserServer& server, const Answer& answer) {
        choose(offer);
        server.answers.push_back(answer);
        const auto told = ask();
        EXPECT_EQ(told.text(), answer.pieces.join(QString()));
        return told.failure ? QString(rawValue(told.failure->kind)) : QString();
    };
    for (const auto& [offer, server] :
         {std::pair(ollamaOffer, &home.ollama), std::pair(llamaOffer, &home.llama)}) {
        EXPECT_EQ(failureOf(offer, *server, {.status = 429, .error = "{}"}), rawValue(Case::RateLimited));
        EXPECT_EQ(failureOf(offer, *server, {.status = 503, .error = "{}"}), rawValue(Case::ModelLoading));
        EXPECT_EQ(failureOf(offer, *server, {.status = 404, .error = R"({"error":"no model"})"}),
                  rawValue(Case::Other));
        EXPECT_EQ(failureOf(offer, *server, {.pieces = {"So "}, .reason = "length"}),
                  rawValue(Case::TooLong));
        EXPECT_EQ(failureOf(offer, *server, {.pieces = {"So "}, .error = "garbage"}), rawValue(Case::Other));
        EXPECT_EQ(failureOf(offer, *server, {.pieces = {"So "}, .error = R"({"error":"it has crashed"})"}),
                  rawValue(Case::Other));
    }
    EXPECT_EQ(failureOf(ollamaOffer, home.ollama,
                        {.status = 400, .error = R"({"error":"input exceeds the context length"})"}),
              rawValue(Case::TooLong));
}

TEST_F(ChosenLanguageModelTest, serverThatEndsInMidAnswer_failsBehindWhatWasWritten) {
    choose(llamaOffer);
    const QByteArray event = "data: {\"choices\":[{\"delta\":{\"content\":\"So \"}}]}\n\n";
    home.llama.everyAnswer = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n" +
                             QByteArray::number(event.size(), 16) + "\r\n" + event + "\r\n";
    Told told;
    const auto session = model().makeSession("Reply.", LanguageModel::Guardrails::Default);
    session->streamResponse("so um", told.listener());
    EXPECT_TRUE(eventually([&] { return !told.snapshots.isEmpty(); }));
    home.llama.stop();
    EXPECT_TRUE(eventually([&] { return told.ends > 0; }));
    expectFailure(told, Case::Other);
    EXPECT_EQ(told.text(), "So ");
    EXPECT_TRUE(eventually([&] { return model().unavailableReason() == Reason::IntelligenceOff; }));
}

TEST_F(ChosenLanguageModelTest, serverThatSaysNothing_isNotWaitedForLonger) {
    home.limits.silence = seconds(0.3);
    home.start();
    choose(llamaOffer);
    home.llama.everyAnswer = QByteArray();
    Told told;
    const auto session = model().makeSession("Reply.", LanguageModel::Guardrails::Default);
    session->streamResponse("so um", told.listener());
    EXPECT_TRUE(eventually([&] { return told.ends > 0; }));
    expectFailure(told, Case::Other);
}

} // namespace
