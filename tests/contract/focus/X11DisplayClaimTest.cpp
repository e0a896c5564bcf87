// SPDX-License-Identifier: MIT
#include "linux/x11/windows/X11DisplayClaim.h"
#include "ForkedProcess.h"
#include "Peer.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <optional>
#include <string>
#include <vector>

using namespace talvera;
using test::eventually;
using test::ForkedProcess;
using test::Peer;

namespace {

constexpr char holder = 'h';
constexpr char notHolder = 'n';

class X11DisplayClaimTest : public testing::Test {
protected:
    /// A process that says whether it holds the display, and stays.
    static ForkedProcess start() {
        return ForkedProcess([](auto say) {
            const X11DisplayClaim claim{X11Server()};
            say(claim.isOurs() ? holder : notHolder);
            ForkedProcess::stay();
        });
    }

    /// A start that tells the holder; it says whether it was heard.
    static ForkedProcess startAndTell(const char* purpose = "") {
        return ForkedProcess([purpose](auto say) {
            X11DisplayClaim claim{X11Server()};
            say(!claim.isOurs() && claim.tellHolder(QString::fromUtf8(purpose)) ? 'y' : 'n');
        });
    }

    /// The server learns of a holder's end a moment after it.
    static bool isFreeSoon() {
        const auto looking = X11Server().connect();
        const auto selection = looking->atom("_TALVERA_AGENT");
        return eventually([&] { return looking->selectionOwner(selection) == XCB_WINDOW_NONE; });
    }

    void SetUp() override { ASSERT_TRUE(isFreeSoon()); }
};

/// Holds the display in a program with an event loop.
class X11DisplayHolder : public X11DisplayClaimTest {
protected:
    void SetUp() override {
        X11DisplayClaimTest::SetUp();
        m_claim.emplace(X11Server());
    }

    void listen() {
        m_claim->onSecondStart([this](const QString& purpose) {
            ++heard;
            lastPurpose = purpose;
        });
    }
    void awaitStarts(int count) const {
        while (heard < count)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

    int heard = 0; ///< second starts
    QString lastPurpose;

private:
    int m_argumentCount = 1;
    char m_name[5] = "test";
    char* m_arguments[2] = {m_name, nullptr};
    const QCoreApplication m_application{m_argumentCount, m_arguments};
    std::optional<X11DisplayClaim> m_claim;
};

/// A second X server, as of another session of the same user.
class OtherDisplay {
public:
    OtherDisplay() {
        int ready[2];
        if (::pipe(ready) != 0)
            return;
        m_server = std::make_unique<Peer>("Xvfb",
                                          QStringList{"-displayfd", QString::number(ready[1]), "-screen", "0",
                                                      "640x480x24", "-ac", "-noreset", "-nolisten", "tcp"});
        ::close(ready[1]);
        QByteArray number(16, 0);
        const auto size = ::read(ready[0], number.data(), static_cast<std::size_t>(number.size()));
        ::close(ready[0]);
        if (size > 0)
            name = ":" + number.left(static_cast<qsizetype>(size)).trimmed().toStdString();
    }

    std::string name;

private:
    std::unique_ptr<Peer> m_server;
};

TEST_F(X11DisplayClaimTest, secondStartOnTheDisplay_doesNotHoldIt) {
    const X11DisplayClaim first{X11Server()};
    EXPECT_TRUE(first.isOurs());
    EXPECT_EQ(start().hear(), notHolder);
}

TEST_F(X11DisplayClaimTest, otherDisplayOfTheSameUser_hasAHolderOfItsOwn) {
    const OtherDisplay other;
    ASSERT_FALSE(other.name.empty()) << "Xvfb did not start";
    const X11DisplayClaim here{X11Server()};
    const X11DisplayClaim there{X11Server(other.name)};
    EXPECT_TRUE(here.isOurs());
    EXPECT_TRUE(there.isOurs());
}

TEST_F(X11DisplayHolder, secondStart_isHeardByTheHolderFromItsEventLoop) {
    listen();
    for (int start = 1; start <= 3; ++start) {
        auto second = startAndTell();
        awaitStarts(start);
        EXPECT_EQ(second.hear(), 'y');
    }
    QCoreApplication::processEvents();
    EXPECT_EQ(heard, 3);
}

TEST_F(X11DisplayHolder, purposeOfTheSecondStart_isToldToTheHolder) {
    listen();
    int start = 0;
    for (const auto* purpose : {"--settings language", "", "größer 大"}) {
        auto second = startAndTell(purpose);
        awaitStarts(++start);
        EXPECT_EQ(second.hear(), 'y');
        EXPECT_EQ(lastPurpose, QString::fromUtf8(purpose));
    }
}

TEST_F(X11DisplayHolder, purposeThatIsTooLong_isCut) {
    listen();
    const std::string purpose(5000, 'x');
    auto second = startAndTell(purpose.c_str());
    awaitStarts(1);
    EXPECT_EQ(second.hear(), 'y');
    EXPECT_EQ(lastPurpose, QString(1000, 'x'));
}

TEST_F(X11DisplayHolder, startBeforeTheHolderListens_isHeardOnceItDoes) {
    const auto second = startAndTell();
    EXPECT_EQ(second.hear(), 'n') << "nobody answered in time";
    listen();
    awaitStarts(1);
    EXPECT_EQ(heard, 1);
}

TEST_F(X11DisplayHolder, requestForSomethingElse_isRefusedAndNoStart) {
    listen();

    const auto other = X11Server().connect();
    const auto window = xcb_generate_id(other->get());
    xcb_create_window(other->get(), 0, window, other->root(), 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_convert_selection(other->get(), window, other->atom("_TALVERA_AGENT"), other->atom("STRING"),
                          other->atom("STRING"), XCB_CURRENT_TIME);
    other->flush();
    XcbEvent event;
    while (!(event = other->pollEvent()))
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    EXPECT_EQ(reinterpret_cast<const xcb_selection_notify_event_t&>(*event).property, XCB_ATOM_NONE);
    EXPECT_EQ(heard, 0);
}

TEST_F(X11DisplayClaimTest, killedHolder_leavesThePlaceFree) {
    auto killed = start();
    ASSERT_EQ(killed.hear(), holder);
    killed.killAndWait();
    EXPECT_TRUE(isFreeSoon());
}

TEST_F(X11DisplayClaimTest, endedHolder_leavesThePlaceFree) {
    { const X11DisplayClaim first{X11Server()}; }
    EXPECT_TRUE(isFreeSoon());
}

TEST_F(X11DisplayClaimTest, manyAtOnce_haveOneHolder) {
    constexpr int count = 8;
    for (int round = 0; round < 5; ++round) {
        ASSERT_TRUE(isFreeSoon());
        std::vector<ForkedProcess> starts;
        for (int start = 0; start < count; ++start)
            starts.push_back(X11DisplayClaimTest::start());
        std::string answers;
        for (const auto& start : starts)
            answers += start.hear();
        EXPECT_EQ(std::count(answers.begin(), answers.end(), holder), 1) << answers;
        EXPECT_EQ(std::count(answers.begin(), answers.end(), notHolder), count - 1) << answers;
    }
}

TEST_F(X11DisplayClaimTest, noServer_noPlace) {
    X11DisplayClaim nowhere{X11Server(":4711")};
    EXPECT_FALSE(nowhere.isOurs());
    EXPECT_FALSE(nowhere.tellHolder({}));
}

} // namespace
