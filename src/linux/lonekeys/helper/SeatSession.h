// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

struct sd_login_monitor;

namespace talvera {

/// Whether the user who started us is the one who sits at the machine now: keyboards are everybody's, one
/// after the other. Where nobody keeps book of sessions (no logind), he is.
class SeatSession {
public:
    SeatSession();
    SeatSession(const SeatSession&) = delete;
    SeatSession& operator=(const SeatSession&) = delete;
    ~SeatSession();

    /// Readable when it may have changed; -1 when it never does.
    int descriptor() const;

    bool isActive();

private:
    struct Closing {
        void operator()(sd_login_monitor* monitor) const;
    };

    std::unique_ptr<sd_login_monitor, Closing> m_monitor;
};

} // namespace talvera
