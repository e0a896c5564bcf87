// SPDX-License-Identifier: MIT
#include "linux/lonekeys/helper/SeatSession.h"

#include <cstdlib>
#include <optional>

#include <systemd/sd-login.h>
#include <unistd.h>

namespace talvera {

namespace {

bool isBookKept() {
    return ::access("/run/systemd/seats/", F_OK) == 0;
}

/// Takes what a function of sd-login has allocated.
std::optional<std::string> taken(int result, char* text) {
    if (result < 0)
        return std::nullopt;
    std::string copy(text);
    std::free(text); // NOLINT(cppcoreguidelines-no-malloc): as sd-login asks for
    return copy;
}

/// The session that we are of; a service of the user's is of none, and works for the one with the display.
std::optional<std::string> ownSession() {
    char* id = nullptr;
    if (auto session = taken(::sd_pid_get_session(0, &id), id))
        return session;
    return taken(::sd_uid_get_display(::getuid(), &id), id);
}

/// A session from another machine has no seat, and counts as active all the time.
bool isAtASeat(const std::string& session) {
    char* seat = nullptr;
    return taken(::sd_session_get_seat(session.c_str(), &seat), seat).has_value();
}

} // namespace

SeatSession::SeatSession() {
    sd_login_monitor* monitor = nullptr;
    if (isBookKept() && ::sd_login_monitor_new("session", &monitor) >= 0)
        m_monitor.reset(monitor);
}

SeatSession::~SeatSession() = default;

void SeatSession::Closing::operator()(sd_login_monitor* monitor) const {
    ::sd_login_monitor_unref(monitor);
}

int SeatSession::descriptor() const {
    return m_monitor ? ::sd_login_monitor_get_fd(m_monitor.get()) : -1;
}

bool SeatSession::isActive() {
    if (!isBookKept())
        return true;
    if (m_monitor)
        ::sd_login_monitor_flush(m_monitor.get());
    const auto session = ownSession();
    return session && isAtASeat(*session) && ::sd_session_is_active(session->c_str()) > 0;
}

} // namespace talvera
