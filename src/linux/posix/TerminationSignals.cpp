// SPDX-License-Identifier: MIT
#include "linux/posix/TerminationSignals.h"

#include "platform/system/PlatformError.h"

#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace talvera {

namespace {

constexpr std::array<int, 3> askingToEnd{SIGTERM, SIGINT, SIGHUP};

volatile std::sig_atomic_t wakeDescriptor = -1; // a signal handler can reach nothing but globals

extern "C" void wakeEventLoop(int) {
    const int error = errno;
    [[maybe_unused]] const auto written = ::write(wakeDescriptor, "", 1);
    errno = error;
}

void handleWith(void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = static_cast<int>(SA_RESTART | SA_RESETHAND);
    for (const int signal : askingToEnd)
        ::sigaction(signal, &action, nullptr);
}

} // namespace

TerminationSignals::TerminationSignals(std::function<void()> asked) {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        throw PlatformError(QStringLiteral("TerminationSignals"), errno, qt_error_string(errno));
    m_readEnd = FileDescriptor(ends[0]);
    m_writeEnd = FileDescriptor(ends[1]);
    m_notifier = std::make_unique<QSocketNotifier>(m_readEnd.get(), QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(),
                     [this, asked = std::move(asked)] {
                         char signal = 0;
                         if (::read(m_readEnd.get(), &signal, 1) == 1)
                             asked();
                     });
    wakeDescriptor = m_writeEnd.get();
    handleWith(wakeEventLoop);
}

TerminationSignals::~TerminationSignals() {
    handleWith(SIG_DFL);
    wakeDescriptor = -1;
}

} // namespace talvera
