// SPDX-License-Identifier: MIT
#pragma once

#include "linux/wayland/client/WaylandConnection.h"

#include <cstdint>
#include <memory>

struct org_kde_kwin_fake_input;

namespace talvera {

/// Presses keys of KWin's one keyboard, which the user's keys share: their modifiers count for ours. One
/// thread at a time.
class FakeKeyboard {
public:
    /// Null where KWin doesn't let us: it lets programs alone whose path a desktop file names.
    static std::unique_ptr<FakeKeyboard> open(std::unique_ptr<WaylandConnection> connection);
    ~FakeKeyboard();
    FakeKeyboard(const FakeKeyboard&) = delete;
    FakeKeyboard& operator=(const FakeKeyboard&) = delete;

    /// By the kernel's number of the key. A key that nobody holds may be let go.
    void set(std::uint32_t key, bool isDown);

    /// Waits until KWin has worked off what was pressed. False when it has gone or doesn't in time.
    bool finish();

    /// KWin has gone, or has been too slow; nothing is pressed any more.
    bool isBroken() const { return m_connection->isBroken(); }

private:
    FakeKeyboard(std::unique_ptr<WaylandConnection> connection, org_kde_kwin_fake_input* input);

    const std::unique_ptr<WaylandConnection> m_connection;
    org_kde_kwin_fake_input* const m_input;
};

} // namespace talvera
