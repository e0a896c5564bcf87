// SPDX-License-Identifier: MIT
#include "SoundServerTest.h"
#include "shortestOf.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace talvera;
using namespace talvera::test;
using namespace std::chrono_literals;

namespace {

class PulseMicrophonePermissionTest : public SoundServerTest {};

/// A socket on which somebody listens who never says a word.
class SilentServer {
public:
    SilentServer()
        : m_directory(QStringLiteral("/tmp/talvera-silent-XXXXXX"))
        , m_socket(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        const auto path = m_directory.filePath(QStringLiteral("native")).toStdString();
        path.copy(address.sun_path, sizeof address.sun_path - 1);
        if (bind(m_socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
            listen(m_socket, 8) != 0)
            throw std::runtime_error("no silent server");
    }
    SilentServer(const SilentServer&) = delete;
    SilentServer& operator=(const SilentServer&) = delete;
    ~SilentServer() {
        close(m_socket);
        for (const int guest : m_guests)
            close(guest);
    }

    /// Takes in the next one who connects and answers with bytes that mean nothing.
    void talkNonsense() {
        const int guest = accept4(m_socket, nullptr, nullptr, SOCK_CLOEXEC);
        const std::string nonsense(4096, '\xEE');
        EXPECT_GT(send(guest, nonsense.data(), nonsense.size(), MSG_NOSIGNAL), 0);
        m_guests.push_back(guest);
    }

    std::string address() const {
        return "unix:" + m_directory.filePath(QStringLiteral("native")).toStdString();
    }

private:
    QTemporaryDir m_directory;
    int m_socket;
    std::vector<int> m_guests;
};

} // namespace

TEST_P(PulseMicrophonePermissionTest, microphone_isAuthorizedFromTheFirstCall) {
    server.start();
    server.addMicrophone();
    PulseConnection fresh(actor, server.address());
    PulseMicrophonePermission permission(fresh);
    EXPECT_EQ(permission.status(), AuthorizationStatus::Authorized);
    EXPECT_EQ(permission.lack(), MicrophoneLack::None);
}

TEST_P(PulseMicrophonePermissionTest, serverWithMonitorsAlone_isDenied) {
    server.start();
    PulseMicrophonePermission permission(connection());
    EXPECT_EQ(permission.status(), AuthorizationStatus::Denied);
    EXPECT_EQ(permission.lack(), MicrophoneLack::Microphone);
}

TEST_P(PulseMicrophonePermissionTest, noServer_isDenied) {
    PulseMicrophonePermission permission(connection());
    EXPECT_EQ(permission.status(), AuthorizationStatus::Denied);
    EXPECT_EQ(permission.lack(), MicrophoneLack::Server);
}

TEST_P(PulseMicrophonePermissionTest, serverThatComesLater_isFoundByAsking) {
    PulseMicrophonePermission permission(connection());
    ASSERT_EQ(permission.status(), AuthorizationStatus::Denied);
    server.start();
    server.addMicrophone();
    EXPECT_TRUE(becomes(AuthorizationStatus::Authorized));
}

TEST_P(PulseMicrophonePermissionTest, pluggingAndUnplugging_isAnnouncedWithoutAsking) {
    server.start();
    PulseMicrophonePermission permission(connection());
    ASSERT_EQ(permission.status(), AuthorizationStatus::Denied);
    auto announced = AuthorizationStatus::Denied;
    const auto subscription = permission.observe([&] { announced = permission.status(); });
    server.addMicrophone();
    EXPECT_TRUE(runUntil([&] { return announced == AuthorizationStatus::Authorized; }));
    server.removeMicrophone();
    EXPECT_TRUE(runUntil([&] { return announced == AuthorizationStatus::Denied; }));
}

TEST_P(PulseMicrophonePermissionTest, serverThatDies_isAnnouncedWithoutAsking) {
    server.start();
    server.addMicrophone();
    PulseMicrophonePermission permission(connection());
    ASSERT_EQ(permission.status(), AuthorizationStatus::Authorized);
    auto announced = AuthorizationStatus::Authorized;
    const auto subscription = permission.observe([&] { announced = permission.status(); });
    server.kill();
    EXPECT_TRUE(runUntil([&] { return announced == AuthorizationStatus::Denied; }));
}

TEST_P(PulseMicrophonePermissionTest, requestAccess_answersOnceTheServerHas) {
    server.start();
    server.addMicrophone();
    PulseConnection fresh(actor, server.address());
    PulseMicrophonePermission permission(fresh);
    std::optional<AuthorizationStatus> answer;
    permission.requestAccess([&] { answer = permission.status(); });
    EXPECT_FALSE(answer) << "not before it has returned";
    ASSERT_TRUE(runUntil([&] { return answer.has_value(); }));
    EXPECT_EQ(answer, AuthorizationStatus::Authorized);
}

TEST_P(PulseMicrophonePermissionTest, requestAccessWithoutAServer_answersToo) {
    PulseMicrophonePermission permission(connection());
    bool answered = false;
    permission.requestAccess([&] { answered = true; });
    EXPECT_TRUE(runUntil([&] { return answered; }));
}

INSTANTIATE_TEST_SUITE_P(, PulseMicrophonePermissionTest,
                         testing::Values(SoundServer::Kind::PulseAudio, SoundServer::Kind::PipeWire),
                         nameOfKind);

namespace {

class SilentServerTest : public testing::Test {
protected:
    int argumentCount = 1;
    char name[5] = "test";
    char* arguments[2] = {name, nullptr};
    QCoreApplication application{argumentCount, arguments};
    QtMainActor actor;
    SilentServer server;
    PulseConnection connection{actor, server.address()};
};

} // namespace

TEST_F(SilentServerTest, status_isUndeterminedAndWaitedForOnlyOnce) {
    PulseMicrophonePermission permission(connection);
    EXPECT_EQ(permission.status(), AuthorizationStatus::NotDetermined) << "the server never answers";
    const auto again = [&] { EXPECT_EQ(permission.status(), AuthorizationStatus::NotDetermined); };
    EXPECT_LT(shortestOf(5, again), 50ms);
}

TEST_F(SilentServerTest, start_timesOutEachTime) {
    PulseAudioInput input(connection);
    for (int attempt = 0; attempt < 2; ++attempt) {
        EXPECT_EQ(input.inputFormat(), AudioFormat{});
        try {
            input.start();
            FAIL() << "it can't have started";
        } catch (const PlatformError& error) {
            EXPECT_EQ(error.as<AudioEngineFailure>(), AudioEngineFailure::TimedOut);
        }
    }
}

TEST_F(SilentServerTest, nonsenseForAnAnswer_isDenied) {
    PulseMicrophonePermission permission(connection);
    bool answered = false;
    permission.requestAccess([&] { answered = true; });
    server.talkNonsense();
    while (!answered)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    EXPECT_EQ(permission.status(), AuthorizationStatus::Denied);
}
