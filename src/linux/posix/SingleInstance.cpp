// SPDX-License-Identifier: MIT
#include "linux/posix/SingleInstance.h"

#include "platform/system/PlatformError.h"

#include <QFile>
#include <QSocketNotifier>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <utility>

namespace talvera {

namespace {

[[noreturn]] void fail(int code) {
    throw PlatformError(QStringLiteral("SingleInstance"), code, qt_error_string(code));
}

sockaddr_un addressOf(const QString& path) {
    const auto name = QFile::encodeName(path);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (static_cast<std::size_t>(name.size()) >= sizeof(address.sun_path))
        fail(ENAMETOOLONG);
    std::memcpy(address.sun_path, name.constData(), static_cast<std::size_t>(name.size()));
    return address;
}

FileDescriptor makeSocket() {
    FileDescriptor made(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (!made.isOpen())
        fail(errno);
    return made;
}

} // namespace

SingleInstance::SingleInstance(const QString& directory)
    : m_socketPath(directory + QStringLiteral("/agent.socket")) {
    const auto lockPath = QFile::encodeName(directory + QStringLiteral("/agent.lock"));
    m_lock = FileDescriptor(::open(lockPath.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (!m_lock.isOpen())
        fail(errno);
    if (::flock(m_lock.get(), LOCK_EX | LOCK_NB) == 0)
        listen();
    else if (errno != EWOULDBLOCK)
        fail(errno);
}

SingleInstance::~SingleInstance() {
    if (isFirst())
        ::unlink(QFile::encodeName(m_socketPath).constData());
}

void SingleInstance::listen() {
    auto listener = makeSocket();
    const auto address = addressOf(m_socketPath);
    ::unlink(address.sun_path); // left by one that crashed
    constexpr int waitingStarts = 8;
    if (::bind(listener.get(), reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0 ||
        ::listen(listener.get(), waitingStarts) != 0)
        fail(errno);
    m_listener = std::move(listener);
}

bool SingleInstance::tellFirst() const {
    const auto speaker = makeSocket();
    const auto address = addressOf(m_socketPath);
    return ::connect(speaker.get(), reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0;
}

void SingleInstance::onSecondStart(std::function<void()> heard) {
    m_notifier = std::make_unique<QSocketNotifier>(m_listener.get(), QSocketNotifier::Read);
    QObject::connect(
        m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(), [this, heard = std::move(heard)] {
            const FileDescriptor other(::accept4(m_listener.get(), nullptr, nullptr, SOCK_CLOEXEC));
            if (other.isOpen())
                heard();
        });
}

} // namespace talvera
