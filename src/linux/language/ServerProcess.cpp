// SPDX-License-Identifier: MIT
#include "linux/language/ServerProcess.h"

#include "linux/support/ChildLauncher.h"

#include <QSocketNotifier>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <utility>

#include <poll.h>
#include <sys/wait.h>

namespace talvera {

namespace {

/// What the server says on its standard error once it has loaded its model.
const QByteArray readyWord = QByteArrayLiteral("listening on unix://");

/// A killed child ends at once, unless the kernel can't let go of it.
constexpr int patienceAtTheEnd = 5000; // milliseconds

using Notifier = std::unique_ptr<QSocketNotifier>;

Notifier notifierFor(const FileDescriptor& descriptor) {
    return std::make_unique<QSocketNotifier>(descriptor.get(), QSocketNotifier::Read);
}

} // namespace

/// A process, from its start until it has been waited for.
class ServerProcess::Child {
public:
    explicit Child(LaunchedChild launched)
        : m_child(std::move(launched))
        , m_ended(notifierFor(m_child.handle))
        , m_output(notifierFor(m_child.standardOutput))
        , m_errors(notifierFor(m_child.standardError)) {}
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;
    ~Child() {
        kill();
        pollfd end{m_child.handle.get(), POLLIN, 0};
        ::poll(&end, 1, patienceAtTheEnd);
        ::waitpid(m_child.pid, nullptr, WNOHANG);
    }

    void kill() const { ::kill(-m_child.pid, SIGKILL); }

    bool hasEnded() const { return !m_ended->isEnabled(); }

    /// Neither of the two may destroy the child.
    void follow(const std::function<void(const QByteArray& text)>& said, const std::function<void()>& ended) {
        const auto drain = [](QSocketNotifier& notifier, int descriptor, const auto& take) {
            std::array<char, 1 << 14> piece;
            const auto count = ::read(descriptor, piece.data(), piece.size());
            if (count > 0)
                take(QByteArray(piece.data(), count));
            else if (count == 0 || (errno != EAGAIN && errno != EINTR))
                notifier.setEnabled(false);
        };
        QObject::connect(m_output.get(), &QSocketNotifier::activated, m_output.get(), [this, drain] {
            drain(*m_output, m_child.standardOutput.get(), [](const QByteArray&) {});
        });
        QObject::connect(m_errors.get(), &QSocketNotifier::activated, m_errors.get(),
                         [this, drain, said] { drain(*m_errors, m_child.standardError.get(), said); });
        QObject::connect(m_ended.get(), &QSocketNotifier::activated, m_ended.get(), [this, ended] {
            m_ended->setEnabled(false);
            ended();
        });
    }

private:
    LaunchedChild m_child;
    Notifier m_ended;
    Notifier m_output;
    Notifier m_errors;
};

ServerProcess::ServerProcess(MainActor& actor)
    : m_actor(actor) {}

ServerProcess::~ServerProcess() = default;

void ServerProcess::start(const QString& program, const QStringList& arguments, const QString& directory) {
    end();
    m_heard.clear();
    m_child = std::make_unique<Child>(launchChild({program, arguments, directory}, ChildReach::ItsOwnSocket));
    m_state = State::Loading;
    // In turns of their own, so that all of this can be changed there.
    const auto inATurn = [this, child = m_child.get()](auto work) {
        m_actor.post(m_lifetime.ifAlive([this, child, work = std::move(work)] {
            if (m_child.get() == child)
                work();
            else
                forget(child);
        }));
    };
    m_child->follow([this, inATurn](const QByteArray& text) { inATurn([this, text] { hear(text); }); },
                    [this, inATurn] { inATurn([this] { takeEnd(); }); });
}

/// The kernel may take a while to give back the memory of a large model, and nobody has to wait for that.
void ServerProcess::end() {
    if (!m_child)
        return;
    m_state = State::Off;
    m_child->kill();
    m_ending.push_back(std::move(m_child));
}

void ServerProcess::hear(const QByteArray& text) {
    if (m_state != State::Loading)
        return;
    m_heard += text;
    if (!m_heard.contains(readyWord)) {
        m_heard = m_heard.right(readyWord.size() - 1);
        return;
    }
    m_heard.clear();
    m_state = State::Ready;
    if (onReady)
        onReady();
}

void ServerProcess::takeEnd() {
    const bool wasLoading = m_state == State::Loading;
    const auto* const child = m_child.get();
    end(); // what it has started goes with it
    forget(child);
    if (onGone)
        onGone(wasLoading);
}

void ServerProcess::forget(const Child* child) {
    const auto own = std::find_if(m_ending.begin(), m_ending.end(),
                                  [child](const auto& ending) { return ending.get() == child; });
    if (own != m_ending.end() && (*own)->hasEnded())
        m_ending.erase(own);
}

} // namespace talvera
