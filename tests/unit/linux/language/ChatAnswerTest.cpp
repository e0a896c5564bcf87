// SPDX-License-Identifier: MIT
#include "linux/language/ChatAnswer.h"
#include "PrintQt.h"
#include "language/AICleanup.h"
#include "linux/language/chatProtocol.h"
#include "linux/language/serverFailures.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

using namespace talvera;
using Case = AIFailure::Case;

namespace {

QByteArray content(const QByteArray& text) {
    return "{\"choices\":[{\"delta\":{\"content\":\"" + text + "\"},\"finish_reason\":null}]}";
}

QByteArray reason(const QByteArray& word) {
    return "{\"choices\":[{\"delta\":{},\"finish_reason\":\"" + word + "\"}]}";
}

ChatAnswer answerOf(const QList<QByteArray>& events) {
    ChatAnswer answer(1000);
    for (const auto& event : events)
        answer.take(event);
    return answer;
}

Case failureOf(const ChatAnswer& answer) {
    EXPECT_TRUE(answer.hasEnded());
    EXPECT_TRUE(answer.failure());
    return answer.failure() ? AICleanup::classify(*answer.failure()).kind : Case::Off;
}

QJsonObject bodyOf(const ModelServer& server) {
    const auto request = chatRequest(server, {"Do:\n- \"x\"", "<raw>größer\t👩‍👩‍👧</raw>"});
    return QJsonDocument::fromJson(request.mid(request.indexOf("\r\n\r\n"))).object();
}

const ModelServer ollama{{}, ChatProtocol::Ollama, "m", 100};

ChatAnswer ollamaAnswerOf(const QList<QByteArray>& lines) {
    ChatAnswer answer(1000, ollama);
    for (const auto& line : lines)
        answer.take(line);
    return answer;
}

QByteArray line(const QByteArray& text) {
    return "{\"message\":{\"role\":\"assistant\",\"content\":\"" + text + "\"},\"done\":false}";
}

TEST(ChatRequest, toOllama_asksForNoThoughtsAndNothingLeftOut) {
    const auto request = bodyOf(ollama);
    EXPECT_EQ(request["model"].toString(), "m");
    EXPECT_EQ(request["messages"].toArray().size(), 2);
    EXPECT_FALSE(request["think"].toBool(true));
    EXPECT_FALSE(request["truncate"].toBool(true));
    EXPECT_FALSE(request["shift"].toBool(true));
    EXPECT_EQ(request["options"].toObject()["num_ctx"].toInt(), 100);
    EXPECT_TRUE(request["options"].toObject()["seed"].isDouble());
}

TEST(ChatRequest, toAServerOfTheUsers_namesTheModel) {
    EXPECT_FALSE(bodyOf({}).contains("model"));
    const auto request = bodyOf({{}, ChatProtocol::Completions, "m", 0});
    EXPECT_EQ(request["model"].toString(), "m");
    EXPECT_FALSE(request["chat_template_kwargs"].toObject()["enable_thinking"].toBool(true));
}

TEST(OllamaAnswer, lines_addUpToTheReasonOfTheEnd) {
    for (const auto* end : {"{\"message\":{\"content\":\"\"},\"done\":true,\"done_reason\":\"stop\"}",
                            "{\"done\":true}", "{\"done\":true,\"prompt_eval_count\":90,\"eval_count\":9}"}) {
        const auto answer = ollamaAnswerOf({line("So "), line("we meet."), end});
        EXPECT_EQ(answer.text(), "So we meet.");
        EXPECT_TRUE(answer.hasEnded());
        EXPECT_FALSE(answer.failure()) << end;
    }
}

TEST(OllamaAnswer, thoughts_areNoneOfTheText) {
    const auto answer = ollamaAnswerOf({"{\"message\":{\"thinking\":\"Hm.\",\"content\":\"\"}}",
                                        line("<think>um</think>\\n"), line("So"), "{\"done\":true}"});
    EXPECT_EQ(answer.text(), "So");
}

TEST(OllamaAnswer, textThatTheContextHasCut_isNoGoodAnswer) {
    for (const auto* end : {"{\"done\":true,\"done_reason\":\"length\"}",
                            "{\"done\":true,\"prompt_eval_count\":100,\"eval_count\":3}",
                            "{\"done\":true,\"prompt_eval_count\":40,\"eval_count\":60}"})
        EXPECT_EQ(failureOf(ollamaAnswerOf({line("So we"), end})), Case::TooLong) << end;
}

TEST(OllamaAnswer, whatIsNoAnswer_failsIt) {
    for (const auto* end : {"{\"error\":\"it has crashed\"}", "{\"done\":true,\"done_reason\":\"unload\"}",
                            "[1]", "garbage", "{\"message\":"})
        EXPECT_EQ(failureOf(ollamaAnswerOf({line("So we"), end})), Case::Other) << end;
    EXPECT_EQ(failureOf(ollamaAnswerOf({"{\"error\":\"input exceeds the context length\"}"})), Case::TooLong);
}

TEST(ChatRequest, says_whatWasAskedAndAFixedSeed) {
    const auto request = bodyOf({});
    const auto messages = request["messages"].toArray();
    ASSERT_EQ(messages.size(), 2);
    EXPECT_EQ(messages[0]["role"].toString(), "system");
    EXPECT_EQ(messages[0]["content"].toString(), "Do:\n- \"x\"");
    EXPECT_EQ(messages[1]["role"].toString(), "user");
    EXPECT_EQ(messages[1]["content"].toString(), "<raw>größer\t👩‍👩‍👧</raw>");
    EXPECT_TRUE(request["stream"].toBool());
    EXPECT_TRUE(request["seed"].isDouble());
    for (const auto* key : {"temperature", "top_p", "top_k", "max_tokens", "n_predict"})
        EXPECT_FALSE(request.contains(QLatin1String(key))) << key << " is left to the model";
}

TEST(ChatAnswer, pieces_addUpToTheReasonOfTheEnd) {
    auto answer = answerOf({"{\"choices\":[{\"delta\":{\"role\":\"assistant\",\"content\":null}}]}",
                            content("So "), content("we meet.")});
    EXPECT_EQ(answer.text(), "So we meet.");
    EXPECT_FALSE(answer.hasEnded());
    answer.take(reason("stop"));
    EXPECT_TRUE(answer.hasEnded());
    EXPECT_FALSE(answer.failure());
    answer.take("{\"choices\":[],\"usage\":{}}");
    answer.take("[DONE]");
    answer.takeEnd();
    EXPECT_FALSE(answer.failure());
    EXPECT_EQ(answer.text(), "So we meet.");
}

TEST(ChatAnswer, thoughts_areNoneOfTheText) {
    const auto answer =
        answerOf({"{\"choices\":[{\"delta\":{\"reasoning_content\":\"Hm, um.\",\"content\":null}}]}",
                  content("<think>The user says um.</th"), content("ink>\\n\\nSo we"), content(" meet."),
                  reason("stop")});
    EXPECT_EQ(answer.text(), "So we meet.");
    EXPECT_FALSE(answer.failure());
}

TEST(ChatAnswer, thoughtsThatWereSpoken_failIt) {
    EXPECT_EQ(failureOf(answerOf({content("Hm, um.</think>So")})), Case::Other);
}

TEST(ChatAnswer, reasons_areFailuresButForAGoodEnd) {
    EXPECT_EQ(failureOf(answerOf({content("So we"), reason("length")})), Case::TooLong);
    EXPECT_EQ(failureOf(answerOf({content("So we"), reason("content_filter")})), Case::Blocked);
    EXPECT_EQ(failureOf(answerOf({content("So we"), reason("tool_calls")})), Case::Other);
}

TEST(ChatAnswer, errorInMidAnswer_isWhatItSays) {
    EXPECT_EQ(
        failureOf(answerOf({content("So"), "{\"error\":{\"code\":503,\"type\":\"unavailable_error\"}}"})),
        Case::ModelLoading);
    EXPECT_EQ(failureOf(answerOf({content("So"), "{\"error\":{\"code\":429}}"})), Case::RateLimited);
    EXPECT_EQ(failureOf(answerOf({content("So"), "{\"error\":{\"code\":500,\"message\":\"secret\"}}"})),
              Case::Other);
}

TEST(ChatAnswer, whatIsNoEvent_failsIt) {
    for (const auto* event : {"", "garbage", "[1,2]", "[DONE]", "\"text\"", "{\"choices\":", "\xFF\xFE"})
        EXPECT_EQ(failureOf(answerOf({content("So"), event})), Case::Other) << event;
}

TEST(ChatAnswer, unknownEvents_arePassedOver) {
    for (const auto* event : {"{}", "{\"choices\":[]}", "{\"choices\":{}}", "{\"choices\":[7]}",
                              "{\"choices\":[{\"delta\":{\"content\":[1]}}]}"}) {
        const auto answer = answerOf({event, content("So"), reason("stop")});
        EXPECT_EQ(answer.text(), "So") << event;
        EXPECT_FALSE(answer.failure()) << event;
    }
}

TEST(ChatAnswer, endBeforeTheReason_failsIt) {
    auto answer = answerOf({content("So we")});
    answer.takeEnd();
    EXPECT_EQ(failureOf(answer), Case::Other);
}

TEST(ChatAnswer, answerWithoutAnEnd_isBrokenOff) {
    ChatAnswer answer(100);
    int pieces = 0;
    for (; pieces < 100 && !answer.hasEnded(); ++pieces)
        answer.take(content("xxxxxxxxxx"));
    EXPECT_EQ(pieces, 11);
    EXPECT_EQ(failureOf(answer), Case::Other);
}

TEST(ServerFailures, statusAndBody_sayWhatItIs) {
    const auto kind = [](int status, const QByteArray& body) {
        return AICleanup::classify(failureOfStatus(status, body)).kind;
    };
    EXPECT_EQ(kind(400, R"({"error":{"code":400,"type":"exceed_context_size_error","n_ctx":512}})"),
              Case::TooLong);
    EXPECT_EQ(kind(429, "slow down"), Case::RateLimited);
    EXPECT_EQ(kind(503, R"({"error":{"message":"Loading model","type":"unavailable_error","code":503}})"),
              Case::ModelLoading);
    EXPECT_EQ(kind(400, R"({"error":{"code":"content_filter"}})"), Case::Blocked);
    EXPECT_EQ(kind(500, ""), Case::Other);
    EXPECT_EQ(kind(302, "{"), Case::Other);
    EXPECT_EQ(kind(400, R"({"error":"the prompt exceeds the Context Length"})"), Case::TooLong);
    EXPECT_EQ(kind(404, R"({"error":"model not found"})"), Case::Other);
}

TEST(ServerFailures, noText_holdsWhatTheServerSaid) {
    const auto error = failureOfStatus(500, R"({"error":{"code":500,"message":"they said: our secret"}})");
    EXPECT_FALSE(error.debugText().contains("secret"));
    EXPECT_FALSE(error.localizedDescription().contains("secret"));
    EXPECT_FALSE(error.localizedDescription().isEmpty());
}

TEST(ServerFailures, serverThatIsGone_isSaidToBeOff) {
    EXPECT_EQ(AICleanup::classify(modelIsOff()).kind, Case::Off);
    EXPECT_EQ(AICleanup::classify(modelIsAway()).kind, Case::ModelLoading);
}

} // namespace
