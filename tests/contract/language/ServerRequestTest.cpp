// SPDX-License-Identifier: MIT
#include "linux/language/ServerRequest.h"
#include "PrintQt.h"
#include "ScriptedSocket.h"
#include "SimulatedMainActor.h"
#include "Told.h"
#include "concurrency/QtMainActor.h"
#include "eventually.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

using namespace talvera;
using namespace talvera::test;
using Case = AIFailure::Case;
using Then = ScriptedSocket::Then;

namespace {

const auto head = ScriptedSocket::head;
const auto text = ScriptedSocket::text;
const auto reason = ScriptedSocket::reason;
const auto chunk = ScriptedSocket::chunk;

class ServerRequestTest : public testing::Test {
protected:
    /// A request to its end.
    Told ask(const ServerRequest::Limits& limits = {}) {
        Told told;
        ServerRequest request(actor, limits, told.listener());
        request.begin(asked(), {"Reply.", "so um we meet"});
        EXPECT_EQ(told.ends, 0) << "told from within";
        EXPECT_TRUE(eventually([&told] { return told.ends > 0; }));
        EXPECT_TRUE(eventually([this] { return path != server.path() || server.disconnections == requests; }))
            << "the connection is given back";
        EXPECT_EQ(told.ends, 1);
        EXPECT_EQ(told.callsAfterTheEnd, 0);
        return told;
    }
    Told askFor(std::vector<QByteArray> pieces, Then then, const ServerRequest::Limits& limits = {}) {
        server.answer(std::move(pieces), then);
        ++requests;
        return ask(limits);
    }
    ModelServer asked() const { return {{path, 0}, protocol, "m", 100}; }
    void expectFailure(const Told& told, Case kind, const QString& written) {
        ASSERT_TRUE(told.failure);
        EXPECT_EQ(rawValue(told.failure->kind), rawValue(kind));
        EXPECT_EQ(told.text(), written);
        EXPECT_FALSE(told.failure->text().isEmpty());
    }

    /// A request on a clock of its own, which stands still until the server has written this much of an
    /// answer, and says no more.
    void begin(ServerRequest& request, SimulatedMainActor& clock, const Told& told, const QString& written) {
        const auto before = server.requests;
        server.answer(written.isEmpty() ? std::vector<QByteArray>()
                                        : std::vector{head(), text(written.toUtf8())},
                      Then::Stay);
        request.begin(asked(), {"Reply.", "so um we meet"});
        clock.settle();
        EXPECT_TRUE(eventually([&] { return server.requests > before && told.text() == written; }));
    }

    QtMainActor actor;
    ScriptedSocket server;
    QString path = server.path();
    ChatProtocol protocol = ChatProtocol::Completions;
    int requests = 0;
};

TEST_F(ServerRequestTest, answer_growsToItsEnd) {
    const auto told = askFor({head(), text("So "), text("we "), text("meet."), reason("stop")}, Then::Stay);
    EXPECT_FALSE(told.failure);
    EXPECT_EQ(told.text(), "So we meet.");
    const auto body = server.request.mid(server.request.indexOf("\r\n\r\n") + 4);
    EXPECT_TRUE(QJsonDocument::fromJson(body).object()["stream"].toBool());
    EXPECT_TRUE(server.request.startsWith("POST /v1/chat/completions HTTP/1.1\r\n"));
}

TEST_F(ServerRequestTest, noServer_isAModelThatIsNotThere) {
    path = server.path() + "-none";
    expectFailure(ask(), Case::ModelLoading, "");
}

TEST_F(ServerRequestTest, socketThatNobodyListensOn_isAModelThatIsNotThere) {
    path = server.path() + "-old";
    QLocalServer::removeServer(path);
    {
        QLocalServer old;
        ASSERT_TRUE(old.listen(path));
        QFile::rename(path, path + "-kept");
    }
    path += "-kept";
    expectFailure(ask(), Case::ModelLoading, "");
}

TEST_F(ServerRequestTest, tooManyRequests_isALimitOfRate) {
    expectFailure(askFor({"HTTP/1.1 429 Too Many Requests\r\nContent-Length: 4\r\n\r\nslow"}, Then::Stay),
                  Case::RateLimited, "");
}

TEST_F(ServerRequestTest, serverThatLoads_isSaidToLoad) {
    expectFailure(askFor({"HTTP/1.1 503 Service Unavailable\r\nConnection: close\r\n\r\n",
                          R"({"error":{"code":503,"type":"unavailable_error"}})"},
                         Then::Close),
                  Case::ModelLoading, "");
}

TEST_F(ServerRequestTest, contextExceededAtOnce_isATextTooLong) {
    const QByteArray body = R"({"error":{"code":400,"type":"exceed_context_size_error"}})";
    expectFailure(askFor({"HTTP/1.1 400 Bad Request\r\nContent-Length: " + QByteArray::number(body.size()) +
                          "\r\n\r\n" + body},
                         Then::Stay),
                  Case::TooLong, "");
}

TEST_F(ServerRequestTest, answerThatIsCutByTheContext_isATextTooLong) {
    expectFailure(askFor({head(), text("So we"), reason("length")}, Then::Stay), Case::TooLong, "So we");
}

TEST_F(ServerRequestTest, filterOfContents_isABlockedText) {
    expectFailure(askFor({head(), text("So"), reason("content_filter")}, Then::Stay), Case::Blocked, "So");
}

TEST_F(ServerRequestTest, redirection_isNotFollowed) {
    expectFailure(askFor({"HTTP/1.1 302 Found\r\nLocation: http://example.com/\r\nContent-Length: 0\r\n\r\n"},
                         Then::Stay),
                  Case::Other, "");
}

TEST_F(ServerRequestTest, resetInMidStream_failsBehindWhatCame) {
    expectFailure(askFor({head(), text("So "), text("we ")}, Then::Reset), Case::Other, "So we ");
}

TEST_F(ServerRequestTest, connectionThatEndsTooSoon_failsWhereverItEnds) {
    const auto whole = head() + text("So we") + reason("stop");
    for (const qsizetype size : {0, 5, 40, 90, 120, 150})
        ASSERT_TRUE(askFor({whole.left(size)}, Then::Close).failure) << size;
    expectFailure(askFor({head(), text("So "), chunk("data: {\"choices\":[{\"del")}, Then::Close),
                  Case::Other, "So ");
    expectFailure(askFor({head(), text("So "), "0\r\n\r\n"}, Then::Stay), Case::Other, "So ");
}

TEST_F(ServerRequestTest, connectionThatEndsBeforeAByte_cameToNothing) {
    for (const bool answers : {false, true}) {
        server.answer(answers ? std::vector{head()} : std::vector<QByteArray>(), Then::Close);
        Told told;
        ServerRequest request(actor, {}, told.listener());
        request.begin(asked(), {"Reply.", "so um we meet"});
        EXPECT_TRUE(eventually([&told] { return told.ends > 0; }));
        EXPECT_NE(request.cameToNothing(), answers);
    }
}

TEST_F(ServerRequestTest, garbage_fails) {
    expectFailure(askFor({QByteArray(1000, '\xA7')}, Then::Close), Case::Other, "");
    expectFailure(askFor({head(), text("So "), "garbage\r\n"}, Then::Stay), Case::Other, "So ");
    expectFailure(askFor({head(), text("So "), chunk("data: garbage\n\n")}, Then::Stay), Case::Other, "So ");
    expectFailure(askFor({"HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\n<html></h"}, Then::Stay), Case::Other,
                  "");
}

TEST_F(ServerRequestTest, eventOfTenMegabytes_failsAndIsNotKept) {
    const QByteArray piece(1 << 20, 'x');
    std::vector<QByteArray> pieces{head(), text("So "), "A00000\r\ndata: "};
    for (int i = 0; i < 10; ++i)
        pieces.push_back(piece);
    expectFailure(askFor(std::move(pieces), Then::Stay), Case::Other, "So ");
}

TEST_F(ServerRequestTest, silence_isNotWaitedForLongerThanAMinute) {
    for (const auto& written : {QString(), QStringLiteral("So ")}) {
        SimulatedMainActor clock;
        Told told;
        ServerRequest request(clock, {}, told.listener());
        begin(request, clock, told, written);
        clock.advance(seconds(59));
        EXPECT_EQ(told.ends, 0);
        clock.advance(seconds(1));
        expectFailure(told, Case::Other, written);
    }
}

TEST_F(ServerRequestTest, serverThatTakesTooLong_isLeft) {
    SimulatedMainActor clock;
    Told told;
    ServerRequest request(clock, {.whole = seconds(30)}, told.listener());
    begin(request, clock, told, "So ");
    clock.advance(seconds(29));
    EXPECT_EQ(told.ends, 0);
    clock.advance(seconds(1));
    expectFailure(told, Case::Other, "So ");
}

TEST_F(ServerRequestTest, answerWithoutAnEnd_isBrokenOff) {
    const auto told = askFor({head(), text("and so on ")}, Then::SendAgain);
    ASSERT_TRUE(told.failure);
    EXPECT_EQ(told.failure->kind, Case::Other);
    EXPECT_GE(told.text().size(), 4000);
    EXPECT_LE(told.text().size(), 20000) << "not all that came in one moment";
}

TEST_F(ServerRequestTest, streamOfNothingWithoutAnEnd_isBrokenOff) {
    expectFailure(
        askFor({head(), text("So "), chunk(": still here\n\n")}, Then::SendAgain, {.bytes = 1 << 18}),
        Case::Other, "So ");
}

TEST_F(ServerRequestTest, thoughts_areNotTold) {
    const auto told = askFor({head(), ScriptedSocket::event(R"({"delta":{"reasoning_content":"Hm."}})"),
                              text("<think>Hm, "), text("um.</thi"), text("nk>\\n\\nSo we"), text(" meet."),
                              reason("stop")},
                             Then::Stay);
    EXPECT_FALSE(told.failure);
    EXPECT_EQ(told.text(), "So we meet.");
    for (const auto& snapshot : told.snapshots)
        EXPECT_FALSE(snapshot.contains("um")) << snapshot.toStdString();
}

TEST_F(ServerRequestTest, answerInLines_growsToItsEndAndFailsAsTheOtherDoes) {
    protocol = ChatProtocol::Ollama;
    const auto line = [](const QByteArray& content) {
        return chunk("{\"message\":{\"content\":\"" + content + "\"},\"done\":false}\n");
    };
    const auto end = chunk("{\"done\":true,\"done_reason\":\"stop\"}\n");
    const auto told = askFor({head(), line("So "), line("we meet."), end}, Then::Stay);
    EXPECT_FALSE(told.failure);
    EXPECT_EQ(told.text(), "So we meet.");
    EXPECT_TRUE(server.request.startsWith("POST /api/chat HTTP/1.1\r\n"));
    expectFailure(askFor({head(), line("So "), chunk("{\"message\":{\"cont")}, Then::Close), Case::Other,
                  "So ");
    expectFailure(askFor({head(), line("So ")}, Then::Reset), Case::Other, "So ");
    expectFailure(askFor({head(), line("So "), chunk("garbage\n")}, Then::Stay), Case::Other, "So ");
    expectFailure(askFor({head(), line("So "), chunk(QByteArray(2 << 20, 'x'))}, Then::Stay), Case::Other,
                  "So ");
    const auto endless = askFor({head(), line("and so on ")}, Then::SendAgain);
    ASSERT_TRUE(endless.failure);
    EXPECT_LE(endless.text().size(), 20000);
}

TEST_F(ServerRequestTest, requestThatIsDropped_givesTheConnectionBack) {
    server.answer({head(), text("So ")}, Then::Stay);
    Told told;
    auto request = std::make_unique<ServerRequest>(actor, ServerRequest::Limits{}, told.listener());
    request->begin(asked(), {"Reply.", "so um we meet"});
    EXPECT_TRUE(eventually([&told] { return !told.snapshots.isEmpty(); }));
    request.reset();
    EXPECT_TRUE(eventually([this] { return server.disconnections == 1; }));
    EXPECT_EQ(told.ends, 0);
}

TEST_F(ServerRequestTest, requestThatIsDroppedByASnapshot_tellsNothingMore) {
    server.answer({head() + text("So ") + text("we ") + reason("stop")}, Then::Stay);
    Told told;
    std::unique_ptr<ServerRequest> request;
    auto listener = told.listener();
    listener.onSnapshot = [&](const QString& content) {
        told.snapshots << content;
        request.reset();
    };
    request = std::make_unique<ServerRequest>(actor, ServerRequest::Limits{}, std::move(listener));
    request->begin(asked(), {"Reply.", "so um we meet"});
    EXPECT_TRUE(eventually([this] { return server.disconnections == 1; }));
    EXPECT_EQ(told.snapshots.size(), 1);
    EXPECT_EQ(told.ends, 0);
}

} // namespace
