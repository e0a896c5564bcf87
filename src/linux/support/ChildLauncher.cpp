// SPDX-License-Identifier: MIT
#include "linux/support/ChildLauncher.h"

#include "linux/support/childConfinement.h"
#include "platform/system/PlatformError.h"
#include "text/wiping.h"

#include <QFile>

#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstring>
#include <vector>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>

#include <linux/close_range.h>
#include <linux/ioprio.h>

namespace talvera {

namespace {

/// So much may wait unread in a pipe; the usual 64 KiB would block the tool after some twenty minutes of
/// talk.
constexpr int pipeBytes = 1 << 20;

/// Tells a program that is started ahead of its input where that will come.
const QByteArray inputVariable("TALVERA_INPUT_FD=");

[[noreturn]] void fail(int code, const QString& what) {
    throw PlatformError(QStringLiteral("ChildProcess"), code,
                        QStringLiteral("%1: %2").arg(what, qt_error_string(code)));
}

struct Pipe {
    FileDescriptor readEnd;
    FileDescriptor writeEnd;
};

/// Moves a descriptor out of the way of 0, 1 and 2, which may be free when our own streams are closed.
FileDescriptor aboveStandardStreams(int descriptor) {
    FileDescriptor original(descriptor);
    if (descriptor > STDERR_FILENO)
        return original;
    FileDescriptor moved(::fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
    if (!moved.isOpen())
        fail(errno, QStringLiteral("pipe"));
    return moved;
}

Pipe makePipe() {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0)
        fail(errno, QStringLiteral("pipe"));
    Pipe pipe;
    FileDescriptor writeEnd(ends[1]); // closed should moving the first one fail
    pipe.readEnd = aboveStandardStreams(ends[0]);
    pipe.writeEnd = aboveStandardStreams(writeEnd.release());
    return pipe;
}

Pipe makeRoomyPipe() {
    auto pipe = makePipe();
    ::fcntl(pipe.writeEnd.get(), F_SETPIPE_SZ, pipeBytes); // if not allowed, the usual size has to do
    return pipe;
}

/// What the program's file says of what the program can do.
bool says(const QString& executable, QByteArrayView mark) {
    QFile file(executable);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return false;
    const auto size = static_cast<std::size_t>(file.size());
    const auto* content = file.map(0, file.size());
    return content != nullptr && ::memmem(content, size, mark.data(), static_cast<std::size_t>(mark.size()));
}

/// The program takes the value of its private option from a descriptor.
bool takesDescriptors(const QString& executable) {
    return says(executable, "talvera: takes --prompt /dev/fd/N");
}

/// A descriptor that holds these bytes, in memory.
FileDescriptor descriptorOf(const QByteArray& bytes) {
    FileDescriptor made(::memfd_create("argument", MFD_CLOEXEC));
    if (!made.isOpen())
        fail(errno, QStringLiteral("argument"));
    auto descriptor = aboveStandardStreams(made.release());
    const auto written =
        ::pwrite(descriptor.get(), bytes.constData(), static_cast<std::size_t>(bytes.size()), 0);
    if (written != bytes.size())
        fail(written < 0 ? errno : ENOSPC, QStringLiteral("argument"));
    return descriptor;
}

/// The strings of a request in the form that exec takes.
class ExecArguments {
public:
    ExecArguments(const ChildProcessRequest& request, ChildReach reach, const FileDescriptor& input)
        : m_directory(encoded(request.workingDirectory))
        , m_priority(request.priority)
        , m_reach(reach)
        , m_input(input.get())
        , m_environment(environmentOf(reach, m_directory)) {
        m_strings.push_back(encoded(request.executable));
        for (const auto& argument : request.arguments)
            m_strings.push_back(encoded(argument));
        hidePrivateValue(request);
        for (auto& string : m_strings)
            m_pointers.push_back(string.data());
        m_pointers.push_back(nullptr);
        if (m_input >= 0)
            m_environment.push_back(inputVariable + QByteArray::number(m_input));
        for (auto& variable : m_environment)
            m_variables.push_back(variable.data());
        m_variables.push_back(nullptr);
    }
    ExecArguments(const ExecArguments&) = delete;
    ExecArguments& operator=(const ExecArguments&) = delete;
    ~ExecArguments() {
        for (auto& string : m_strings)
            wipe(string);
    }

    const char* directory() const { return m_directory.constData(); }
    const char* program() const { return m_pointers.front(); }
    char* const* pointers() const { return m_pointers.data(); }

    char* const* environment() const { return m_variables.data(); }

    ChildProcessRequest::Priority priority() const { return m_priority; }
    ChildReach reach() const { return m_reach; }

    /// What the program gets besides its standard streams; -1 for nothing.
    std::array<int, 2> descriptors() const { return {m_privateValue.get(), m_input}; }

private:
    /// An argument with a NUL inside can't be handed over, and must not arrive cut.
    static QByteArray encoded(const QString& text) {
        if (text.contains(QChar::Null))
            fail(EINVAL, QStringLiteral("argument with a NUL"));
        return QFile::encodeName(text);
    }

    static std::vector<QByteArray> environmentOf(ChildReach reach, const QByteArray& directory) {
        std::vector<QByteArray> variables;
        if (reach == ChildReach::AsWe) {
            for (char** variable = environ; *variable != nullptr; ++variable) {
                if (!QByteArrayView(*variable).startsWith(inputVariable))
                    variables.emplace_back(*variable);
            }
            return variables;
        }
        variables.push_back("HOME=" + directory);
        for (const auto* name : {"PATH", "LANG"}) {
            if (qEnvironmentVariableIsSet(name))
                variables.push_back(QByteArray(name) + '=' + qgetenv(name));
        }
        return variables;
    }

    void hidePrivateValue(const ChildProcessRequest& request) {
        const auto option =
            request.privateOption.isEmpty() ? -1 : request.arguments.lastIndexOf(request.privateOption);
        if (option < 0 || option + 1 >= request.arguments.size() || !takesDescriptors(request.executable))
            return;
        auto& value = m_strings[static_cast<std::size_t>(option) + 2]; // behind the program and the option
        m_privateValue = descriptorOf(value);
        wipe(value);
        value = "/dev/fd/" + QByteArray::number(m_privateValue.get());
    }

    QByteArray m_directory;
    ChildProcessRequest::Priority m_priority;
    ChildReach m_reach;
    int m_input;
    std::vector<QByteArray> m_environment;
    std::vector<char*> m_variables;
    std::vector<QByteArray> m_strings;
    std::vector<char*> m_pointers;
    FileDescriptor m_privateValue;
};

/// Blocks all signals, so that none of our handlers runs in the child before it is another program.
class SignalsBlocked {
public:
    SignalsBlocked() {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &m_before);
    }
    SignalsBlocked(const SignalsBlocked&) = delete;
    SignalsBlocked& operator=(const SignalsBlocked&) = delete;
    ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &m_before, nullptr); }

private:
    sigset_t m_before{};
};

/// Behind everything else, with the processor and with the disk.
void giveWay() {
    constexpr int lowestPriority = 19;
    ::setpriority(PRIO_PROCESS, 0, lowestPriority);
    ::syscall(SYS_ioprio_set, IOPRIO_WHO_PROCESS, 0, IOPRIO_CLASS_IDLE << IOPRIO_CLASS_SHIFT);
}

void resetSignals() {
    for (int signal = 1; signal < NSIG; ++signal)
        ::signal(signal, SIG_DFL);
    sigset_t none;
    sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
}

/// The child's side, up to the moment at which it is another program. Until then it works in our memory, and
/// another thread may hold any lock: only calls that are safe in a signal handler are allowed, and nothing of
/// ours may be changed.
[[noreturn]] void becomeProgram(const ExecArguments& arguments, pid_t parent, int output, int error,
                                int report) {
    ::setpgid(0, 0);
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::getppid() != parent) // it died before we asked
        ::_exit(127);
    if (::chdir(arguments.directory()) == 0 && ::dup2(output, STDOUT_FILENO) >= 0 &&
        ::dup2(error, STDERR_FILENO) >= 0) {
        // Also what some library of ours has opened without care stays here.
        ::close_range(STDERR_FILENO + 1, UINT_MAX, CLOSE_RANGE_CLOEXEC);
        for (const auto descriptor : arguments.descriptors()) {
            if (descriptor >= 0)
                ::fcntl(descriptor, F_SETFD, 0);
        }
        const rlimit none{0, 0}; // what it works on shall not come to lie in a core file
        ::setrlimit(RLIMIT_CORE, &none);
        if (arguments.priority() == ChildProcessRequest::Priority::Low)
            giveWay();
        resetSignals();
        if (arguments.reach() == ChildReach::ItsOwnSocket)
            confineToOwnSocket();
        ::execve(arguments.program(), arguments.pointers(), arguments.environment());
    }
    const int code = errno;
    [[maybe_unused]] const auto reported = ::write(report, &code, sizeof code);
    ::_exit(127);
}

/// Starts the program, in its own process group; this thread stands still until the child is another program
/// or has given up. A fork would copy our page tables, which takes some milliseconds just when the user waits
/// for the text. Signals of the new process are its own, as is what it does with descriptors.
[[gnu::noinline]] pid_t startProgram(const ExecArguments& arguments, int output, int error, int report) {
    const auto parent = ::getpid();
    const pid_t child = ::vfork(); // NOLINT(clang-analyzer-security.insecureAPI.vfork): for its speed
    if (child == 0)
        becomeProgram(arguments, parent, output, error, report);
    return child;
}

/// What the child reports: 0 once it is another program, else the errno that kept it.
int launchResult(int report) {
    int code = 0;
    ssize_t count = 0;
    do {
        count = ::read(report, &code, sizeof code);
    } while (count < 0 && errno == EINTR);
    return count == 0 ? 0 : code;
}

/// A descriptor that becomes readable when the process ends. The C library's own wrapper can't be used: its
/// header of this age doesn't say that it is C.
FileDescriptor openHandle(pid_t pid) {
    return FileDescriptor(static_cast<int>(::syscall(SYS_pidfd_open, pid, 0)));
}

void reap(pid_t pid) {
    while (::waitpid(pid, nullptr, 0) < 0 && errno == EINTR) {
    }
}

} // namespace

bool waitsForInput(const QString& executable) {
    return says(executable, "talvera: waits for TALVERA_INPUT_FD");
}

LaunchedChild launchChild(const ChildProcessRequest& request, ChildReach reach, const FileDescriptor& input) {
    const ExecArguments arguments(request, reach, input);
    auto output = makeRoomyPipe();
    auto error = makeRoomyPipe();
    auto report = makePipe();
    ::fcntl(output.readEnd.get(), F_SETFL, O_NONBLOCK);
    ::fcntl(error.readEnd.get(), F_SETFL, O_NONBLOCK);

    LaunchedChild child;
    {
        const SignalsBlocked blocked;
        child.pid =
            startProgram(arguments, output.writeEnd.get(), error.writeEnd.get(), report.writeEnd.get());
    }
    if (child.pid < 0)
        fail(errno, request.executable);

    report.writeEnd.reset();
    if (const auto code = launchResult(report.readEnd.get()); code != 0) {
        reap(child.pid);
        fail(code, request.executable);
    }
    child.handle = openHandle(child.pid);
    if (!child.handle.isOpen()) {
        const auto code = errno;
        ::kill(-child.pid, SIGKILL);
        reap(child.pid);
        fail(code, request.executable);
    }
    child.standardOutput = std::move(output.readEnd);
    child.standardError = std::move(error.readEnd);
    return child;
}

} // namespace talvera
