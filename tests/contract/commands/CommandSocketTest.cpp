// SPDX-License-Identifier: MIT
// The agent's end of its sockets and the end of those that have it do something, as processes of their own.
#include "linux/commands/CommandSocket.h"
#include "ForkedProcess.h"
#include "PrintQt.h"
#include "eventually.h"
#include "linux/commands/askAgent.h"
#include "linux/support/processes.h"

#include <QCoreApplication>
#include <QFile>
#include <QLocalSocket>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

using namespace talvera;
using namespace talvera::test;

namespace {

constexpr std::chrono::seconds enough{60};

/// How an agent answered: done, refused, not at all, or there was none.
char letterFor(const std::variant<CommandReply, AgentSilence>& answer) {
    if (const auto* silence = std::get_if<AgentSilence>(&answer))
        return *silence == AgentSilence::NotRunning ? 'x' : '-';
    const auto& reply = std::get<CommandReply>(answer);
    return reply.isDone ? 'd' : 'r';
}

class CommandSocketTest : public testing::Test {
protected:
    QString path(const char* name = "one.socket") const { return directory.path() + "/" + name; }

    /// Answers each request with its words.
    void listen() { listen({path()}); }
    void listen(const QStringList& paths) {
        socket.emplace(paths, [this](const CommandRequest& request) {
            requests.push_back(request);
            return CommandReply{request.words.value(0) != "unknown", request.words.join(u' ')};
        });
    }

    /// A process that asks this.
    ForkedProcess ask(const QStringList& words) { return ask({path()}, words); }
    static ForkedProcess ask(const QStringList& paths, const QStringList& words) {
        return ForkedProcess([&](auto say) {
            const auto answer = askAgent(paths, words, enough);
            say(letterFor(answer));
            if (const auto* reply = std::get_if<CommandReply>(&answer))
                say(reply->text == words.join(u' ') ? '=' : '!');
        });
    }
    /// What that process comes to say, with our event loop running meanwhile.
    char hear(const ForkedProcess& process) {
        char word = 0;
        std::thread listening([&] { word = process.hear(); });
        bool isHeard = false;
        std::thread waiting([&] {
            listening.join();
            QMetaObject::invokeMethod(
                QCoreApplication::instance(), [&isHeard] { isHeard = true; }, Qt::QueuedConnection);
        });
        while (!isHeard)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        waiting.join();
        return word;
    }

    QTemporaryDir directory;
    std::vector<CommandRequest> requests;
    std::optional<CommandSocket> socket;
};

TEST_F(CommandSocketTest, request_isHeardAndItsReplyTold) {
    listen();
    EXPECT_TRUE(socket->failed().isEmpty());
    const auto asking = ask({"status", "größer", "--json"});
    EXPECT_EQ(hear(asking), 'd');
    EXPECT_EQ(hear(asking), '=');
    ASSERT_EQ(requests.size(), 1U);
    EXPECT_EQ(requests[0].words, QStringList({"status", "größer", "--json"}));
    EXPECT_EQ(requests[0].begun, processStart(asking.pid()));
    EXPECT_TRUE(requests[0].begun);
}

TEST_F(CommandSocketTest, processes_areToldApartByTheirStart) {
    listen();
    const auto first = ask({"press"});
    EXPECT_EQ(hear(first), 'd');
    std::this_thread::sleep_for(std::chrono::milliseconds(30)); // which the kernel tells apart
    const auto second = ask({"release"});
    EXPECT_EQ(hear(second), 'd');
    EXPECT_LT(requests.at(0).begun, requests.at(1).begun);
}

TEST_F(CommandSocketTest, whatIsRefused_isToldToBe) {
    listen();
    EXPECT_EQ(hear(ask({"unknown"})), 'r');
}

TEST_F(CommandSocketTest, longReply_comesWhole) {
    const QString text(3'000'000, u'ä');
    socket.emplace(QStringList{path()}, [&](const CommandRequest&) { return CommandReply{true, text}; });
    const ForkedProcess asking([&](auto say) {
        const auto answer = askAgent({path()}, {"status"}, enough);
        const auto* reply = std::get_if<CommandReply>(&answer);
        say(reply && reply->text == text ? 'y' : 'n');
    });
    EXPECT_EQ(hear(asking), 'y');
}

TEST_F(CommandSocketTest, manyAtOnce_areAllAnswered) {
    listen();
    std::vector<ForkedProcess> asking;
    for (int i = 0; i < CommandSocket::mostPeers; ++i)
        asking.push_back(ask({"press"}));
    for (const auto& each : asking)
        EXPECT_EQ(hear(each), 'd');
    EXPECT_EQ(requests.size(), static_cast<std::size_t>(CommandSocket::mostPeers));
}

TEST_F(CommandSocketTest, eachNameOfTheSession_leadsToTheAgent) {
    const QStringList names{path("wayland-0"), path(":0")};
    listen(names);
    EXPECT_EQ(hear(ask({names[0]}, {"press"})), 'd');
    EXPECT_EQ(hear(ask({names[1]}, {"press"})), 'd');
    EXPECT_EQ(hear(ask({path("other"), names[1]}, {"press"})), 'd');
}

TEST_F(CommandSocketTest, noAgent_isNotRunning) {
    EXPECT_EQ(hear(ask({"press"})), 'x');
    EXPECT_EQ(hear(ask(QStringList(), {"press"})), 'x');
}

TEST_F(CommandSocketTest, agentThatHasEnded_leavesNothing) {
    listen();
    EXPECT_TRUE(QFile::exists(path()));
    socket.reset();
    EXPECT_FALSE(QFile::exists(path()));
    EXPECT_EQ(hear(ask({"press"})), 'x');
}

TEST_F(CommandSocketTest, agentThatWasKilled_leavesThePlaceToTheNext) {
    ForkedProcess killed([&](auto say) {
        listen();
        say('.');
        ForkedProcess::stay();
    });
    EXPECT_EQ(killed.hear(), '.');
    killed.killAndWait();
    EXPECT_TRUE(QFile::exists(path()));
    EXPECT_EQ(hear(ask({"press"})), 'x');
    listen();
    EXPECT_TRUE(socket->failed().isEmpty());
    EXPECT_EQ(hear(ask({"press"})), 'd');
}

TEST_F(CommandSocketTest, agentThatLives_keepsItsPlace) {
    listen();
    CommandSocket second({path()}, [](const CommandRequest&) { return CommandReply{false}; });
    EXPECT_EQ(second.failed(), QStringList{path()});
    EXPECT_EQ(hear(ask({"press"})), 'd');
}

TEST_F(CommandSocketTest, directoryThatIsGone_isToldAndNoCrash) {
    listen({directory.filePath("none/one.socket"), path()});
    EXPECT_EQ(socket->failed(), QStringList{directory.filePath("none/one.socket")});
    EXPECT_EQ(hear(ask({"press"})), 'd');
}

TEST_F(CommandSocketTest, nameBeyondWhatASocketTakes_isToldAndNoCrash) {
    const auto tooLong = path(QByteArray(120, 'x').constData());
    listen({tooLong, path()});
    EXPECT_EQ(socket->failed(), QStringList{tooLong});
    EXPECT_EQ(hear(ask({tooLong, path()}, {"press"})), 'd');
}

TEST_F(CommandSocketTest, agentThatHangs_givesNoAnswer) {
    listen();
    const auto answer = askAgent({path()}, {"press"}, std::chrono::milliseconds(50)); // in its own thread
    EXPECT_EQ(letterFor(answer), '-');
}

TEST_F(CommandSocketTest, requestWithoutEnd_isCutOff) {
    listen();
    QLocalSocket peer;
    peer.connectToServer(path());
    peer.write(QByteArray(100'000, 'x'));
    EXPECT_TRUE(eventually([&] { return peer.state() == QLocalSocket::UnconnectedState; }));
    EXPECT_TRUE(requests.empty());
}

TEST_F(CommandSocketTest, silentPeer_isCutOffInTime) {
    listen();
    QLocalSocket peer;
    peer.connectToServer(path());
    peer.write("pre");
    EXPECT_TRUE(eventually([&] { return peer.state() == QLocalSocket::UnconnectedState; }));
    EXPECT_TRUE(requests.empty());
}

TEST_F(CommandSocketTest, requestInPieces_isOne) {
    listen();
    QLocalSocket peer;
    peer.connectToServer(path());
    for (const auto* piece : {"sta", "tus --js", "on\nand more\n"}) {
        peer.write(piece);
        peer.flush();
        QCoreApplication::processEvents();
    }
    EXPECT_TRUE(eventually([&] { return peer.state() == QLocalSocket::UnconnectedState; }));
    ASSERT_EQ(requests.size(), 1U);
    EXPECT_EQ(requests[0].words, QStringList({"status", "--json"}));
    EXPECT_EQ(peer.readAll(), "done\nstatus --json");
}

TEST_F(CommandSocketTest, peersThatSayNothing_leaveRoomForOthersInTime) {
    listen();
    std::vector<std::unique_ptr<QLocalSocket>> silent;
    for (int i = 0; i < 2 * CommandSocket::mostPeers; ++i) {
        silent.push_back(std::make_unique<QLocalSocket>());
        silent.back()->connectToServer(path());
    }
    EXPECT_TRUE(eventually([&] {
        return std::all_of(silent.begin(), silent.end(),
                           [](const auto& each) { return each->state() == QLocalSocket::UnconnectedState; });
    }));
    EXPECT_EQ(hear(ask({"press"})), 'd');
}

TEST_F(CommandSocketTest, otherUser_isTurnedAway) {
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root can be another user";
    listen();
    ::chmod(QFile::encodeName(directory.path()).constData(), 0755);
    ::chmod(QFile::encodeName(path()).constData(), 0666);
    const ForkedProcess other([&](auto say) {
        constexpr uid_t nobody = 65534;
        if (::setuid(nobody) != 0)
            return;
        say(letterFor(askAgent({path()}, {"press"}, enough)));
    });
    EXPECT_EQ(hear(other), '-');
    EXPECT_TRUE(requests.empty());
}

} // namespace
