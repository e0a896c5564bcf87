// SPDX-License-Identifier: MIT
#include "linux/posix/StandardConsole.h"

#include <QByteArray>
#include <QList>

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

using namespace talvera;

namespace {

/// Turns one of the program's streams into a pipe for a while.
class CapturedStream {
public:
    explicit CapturedStream(int stream)
        : m_stream(stream)
        , m_original(::dup(stream)) {
        int ends[2];
        EXPECT_EQ(::pipe2(ends, O_CLOEXEC), 0);
        m_readEnd = ends[0];
        ::fcntl(m_readEnd, F_SETPIPE_SZ, 1 << 20);
        ::dup2(ends[1], stream);
        ::close(ends[1]);
    }
    CapturedStream(const CapturedStream&) = delete;
    CapturedStream& operator=(const CapturedStream&) = delete;
    ~CapturedStream() {
        restore();
        closeReader();
    }

    void closeReader() {
        if (m_readEnd >= 0)
            ::close(m_readEnd);
        m_readEnd = -1;
    }

    /// Reads so much.
    void take(std::size_t bytes) {
        std::vector<char> taken(bytes);
        for (std::size_t count = 0; count < bytes;)
            count += static_cast<std::size_t>(::read(m_readEnd, taken.data() + count, bytes - count));
    }

    QByteArray text() {
        restore(); // closes the pipe's other end
        QByteArray all;
        char piece[4096];
        for (auto count = ::read(m_readEnd, piece, sizeof piece); count > 0;
             count = ::read(m_readEnd, piece, sizeof piece))
            all.append(piece, count);
        return all;
    }

private:
    void restore() {
        if (m_original < 0)
            return;
        ::dup2(m_original, m_stream);
        ::close(m_original);
        m_original = -1;
    }

    int m_stream;
    int m_original;
    int m_readEnd = -1;
};

TEST(StandardConsole, line_standsOnStandardOutputAtOnce) {
    CapturedStream output(STDOUT_FILENO);
    StandardConsole().print(QStringLiteral("[chunked] größer — 😀"));
    EXPECT_EQ(output.text(), "[chunked] größer — 😀\n");
}

TEST(StandardConsole, log_goesToStandardError) {
    CapturedStream error(STDERR_FILENO);
    StandardConsole().log(QStringLiteral("not saved"));
    EXPECT_EQ(error.text(), "not saved\n");
}

TEST(StandardConsole, linesOfSeveralThreads_stayWhole) {
    CapturedStream output(STDOUT_FILENO);
    StandardConsole console;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&console, thread] {
            for (int line = 0; line < 200; ++line)
                console.print(QString(60, QChar('a' + thread)));
        });
    }
    for (auto& thread : threads)
        thread.join();
    const auto lines = output.text().split('\n');
    EXPECT_EQ(lines.size(), 801);
    for (const auto& line : lines.mid(0, 800))
        EXPECT_EQ(line, QByteArray(60, line.isEmpty() ? '?' : line.front()));
}

TEST(StandardConsole, readerThatHasGone_doesNotEndTheProgram) {
    struct sigaction before {};
    ASSERT_EQ(::sigaction(SIGPIPE, nullptr, &before), 0);
    ASSERT_EQ(before.sa_handler, SIG_DFL);
    {
        CapturedStream output(STDOUT_FILENO);
        output.closeReader();
        StandardConsole().print(QStringLiteral("nobody reads this"));
    }
    sigset_t pending;
    ::sigpending(&pending);
    EXPECT_EQ(sigismember(&pending, SIGPIPE), 0);
}

/// Fills the pipe behind the stream up to the last byte.
void fill(int stream) {
    const int flags = ::fcntl(stream, F_GETFL);
    ::fcntl(stream, F_SETFL, flags | O_NONBLOCK);
    const std::vector<char> noise(1 << 16, 'x');
    for (auto size = noise.size(); size > 0;) {
        if (::write(stream, noise.data(), size) < 0)
            size /= 2;
    }
    ::fcntl(stream, F_SETFL, flags);
}

TEST(StandardConsole, readerThatDoesNotKeepUp_holdsNobodyUp) {
    CapturedStream output(STDOUT_FILENO);
    fill(STDOUT_FILENO);
    StandardConsole console;
    for (const int length : {10, 5000, 3'000'000})
        console.print(QString(length, u'y')); // returns
    EXPECT_FALSE(output.text().contains('y'));
}

TEST(StandardConsole, lineForWhichThereIsRoomAgain_arrives) {
    CapturedStream output(STDOUT_FILENO);
    fill(STDOUT_FILENO);
    StandardConsole console;
    console.print(QStringLiteral("lost"));
    output.take(1 << 16);
    console.print(QStringLiteral("seen"));
    EXPECT_TRUE(output.text().endsWith("xseen\n"));
}

TEST(StandardConsole, longLine_isWhole) {
    CapturedStream output(STDOUT_FILENO);
    StandardConsole().print(QString(200'000, u'y'));
    EXPECT_EQ(output.text(), QByteArray(200'000, 'y') + '\n');
}

TEST(StandardConsole, terminalThatIsStopped_holdsNobodyUp) {
    const int user = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    ASSERT_TRUE(user >= 0 && ::grantpt(user) == 0 && ::unlockpt(user) == 0);
    const int terminal = ::open(::ptsname(user), O_RDWR | O_NOCTTY | O_CLOEXEC);
    ASSERT_GE(terminal, 0);
    ASSERT_EQ(::tcflow(terminal, TCOOFF), 0); // as Ctrl+S does
    const int before = ::dup(STDOUT_FILENO);
    ::dup2(terminal, STDOUT_FILENO);
    StandardConsole().print(QStringLiteral("nobody sees this")); // returns
    ::dup2(before, STDOUT_FILENO);
    for (const int descriptor : {before, terminal, user})
        ::close(descriptor);
}

} // namespace
