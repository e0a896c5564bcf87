// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/SessionAccess.h"

namespace talvera::test {

/// A session that lets us do what the test says.
class FakeSessionAccess final : public SessionAccess {
public:
    bool trusted = true; ///< nothing is lacking
    bool inputMonitoring = true;
    SessionLack lack = SessionLack::Permission; ///< while it isn't trusted
    std::vector<SessionLack> given{};           ///< what the user has wanted of it

    std::vector<SessionLack> lacks() override {
        return trusted ? std::vector<SessionLack>() : std::vector{lack};
    }
    bool give(SessionLack wanted) override {
        given.push_back(wanted);
        return wanted == SessionLack::ExtensionOff;
    }
    bool canWatchKeys() override { return inputMonitoring; }
};

} // namespace talvera::test
