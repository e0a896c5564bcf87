// SPDX-License-Identifier: MIT
#include "linux/posix/PosixPreparedChild.h"

#include "linux/posix/RunningChild.h"
#include "linux/posix/availableMemory.h"
#include "platform/system/PlatformError.h"

#include <cerrno>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/eventfd.h>
#include <sys/socket.h>

namespace talvera {

namespace {

constexpr std::chrono::milliseconds forAsLongAsItTakes{-1};

/// The child's end and ours.
std::pair<FileDescriptor, FileDescriptor> makeSockets() {
    int ends[2];
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0)
        throw PlatformError(QStringLiteral("ChildProcess"), errno, qt_error_string(errno));
    const FileDescriptor original(ends[0]);
    FileDescriptor ours(ends[1]);
    // Out of the way of the standard streams, which may be free when our own are closed.
    FileDescriptor theirs(::fcntl(original.get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
    if (!theirs.isOpen())
        throw PlatformError(QStringLiteral("ChildProcess"), errno, qt_error_string(errno));
    return {std::move(theirs), std::move(ours)};
}

bool hasRoom(qint64 bytes) {
    const auto available = availableMemory();
    return !available || *available >= bytes;
}

} // namespace

PreparedChildren::PreparedChildren()
    : m_ending(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

PreparedChildren::~PreparedChildren() {
    endAll();
}

void PreparedChildren::start(std::function<void()> work) {
    m_threads.start("prepared", std::move(work));
}

void PreparedChildren::endAll() {
    ::eventfd_write(m_ending.get(), 1);
}

void PreparedChildren::countDying(int difference) {
    const std::scoped_lock lock(m_mutex);
    m_dying += difference;
    m_changed.notify_all();
}

void PreparedChildren::awaitDying() {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_dying == 0; });
}

/// What the thread and the object have in common.
class PosixPreparedChild::Watch {
public:
    Watch(PreparedChildren& children, ChildProcessRequest request, PosixChildProcess::Limits limits)
        : m_children(children)
        , m_request(std::move(request))
        , m_limits(limits)
        , m_call(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

    /// The thread's work: from the launch of the child to its end.
    void run() {
        std::optional<ChildProcessResult> result;
        try {
            m_children.awaitDying();
            if (mayBegin() && hasRoom(m_request.memory) && waitsForInput(m_request.executable))
                result = live();
        } catch (const PlatformError&) {
            // As if it had never been prepared: whoever wants its result starts the program anew.
        }
        const std::scoped_lock lock(m_mutex);
        m_result = std::move(result);
        m_isReady = false;
        m_isOver = true;
        if (m_isDying)
            m_children.countDying(-1);
        m_changed.notify_all();
    }

    std::optional<ChildProcessResult> finish(const QByteArray& input) {
        std::unique_lock lock(m_mutex);
        m_input = &input;
        ::eventfd_write(m_call.get(), 1);
        m_changed.wait(lock, [this] { return m_isOver; });
        return std::move(m_result);
    }

    void end() {
        const std::scoped_lock lock(m_mutex);
        if (std::exchange(m_isUnwanted, true))
            return;
        m_isDying = m_hasBegun && !m_isOver;
        if (m_isDying)
            m_children.countDying(+1);
        ::eventfd_write(m_call.get(), 1);
    }

    bool isReady() {
        const std::scoped_lock lock(m_mutex);
        return m_isReady;
    }

private:
    bool mayBegin() {
        const std::scoped_lock lock(m_mutex);
        m_hasBegun = m_call.isOpen() && !m_isUnwanted;
        return m_hasBegun;
    }

    std::optional<ChildProcessResult> live() {
        auto [theirs, ours] = makeSockets();
        RunningChild child(launchChild(m_request, ChildReach::AsWe, theirs));
        theirs.reset();
        const auto* bytes = awaitInput(child, ours.get());
        if (bytes == nullptr) {
            child.kill();
            child.result(RunningChild::Ending::Called);
            return std::nullopt;
        }
        ChildInput input(std::move(ours), *bytes);
        const auto ending = child.awaitEnd(m_limits, {m_children.ending(), m_call.get()}, &input);
        auto result = child.result(ending);
        const bool wasReady = isReady() || input.hearsReady();
        const bool hasWorked = ending == RunningChild::Ending::ByItself && input.isSent() && wasReady;
        return hasWorked || ending == RunningChild::Ending::Hung ? std::optional(std::move(result))
                                                                 : std::nullopt;
    }

    /// What the child is to read; null when it is to end, or has ended.
    const QByteArray* awaitInput(RunningChild& child, int socket) {
        for (;;) {
            const auto news = child.wait(forAsLongAsItTakes, {m_children.ending(), m_call.get(), socket});
            if (news.hasEnded || news.call == m_children.ending())
                return nullptr;
            const std::scoped_lock lock(m_mutex);
            if (news.call == socket) {
                char word = 0;
                m_isReady = ::recv(socket, &word, 1, MSG_DONTWAIT) == 1;
                socket = -1; // it says nothing else, also when it has closed its end
            } else if (news.call == m_call.get()) {
                eventfd_t calls = 0;
                ::eventfd_read(m_call.get(), &calls);
                if (m_isUnwanted || m_input != nullptr)
                    return m_isUnwanted ? nullptr : m_input;
            }
        }
    }

    PreparedChildren& m_children; // the thread's; it is gone when they are
    const ChildProcessRequest m_request;
    const PosixChildProcess::Limits m_limits;
    const FileDescriptor m_call; ///< an event: one of the two that follow has changed

    std::mutex m_mutex; // guards what follows
    std::condition_variable m_changed;
    const QByteArray* m_input = nullptr;
    bool m_isUnwanted = false;
    bool m_hasBegun = false;
    bool m_isDying = false; ///< unwanted, but not over
    bool m_isReady = false;
    bool m_isOver = false;
    std::optional<ChildProcessResult> m_result;
};

PosixPreparedChild::PosixPreparedChild(PreparedChildren& children, const ChildProcessRequest& request,
                                       PosixChildProcess::Limits limits)
    : m_watch(std::make_shared<Watch>(children, request, limits)) {
    children.start([watch = m_watch] { watch->run(); });
}

PosixPreparedChild::~PosixPreparedChild() {
    m_watch->end();
}

std::optional<ChildProcessResult> PosixPreparedChild::finish(const QByteArray& input) {
    return m_watch->finish(input);
}

void PosixPreparedChild::end() {
    m_watch->end();
}

bool PosixPreparedChild::isReady() const {
    return m_watch->isReady();
}

} // namespace talvera
