// SPDX-License-Identifier: MIT
#pragma once

#include "platform/LoginItem.h"
#include "platform/PlatformError.h"

namespace talvera {

/// A session that starts nothing at login.
class NoLoginItem final : public LoginItem {
public:
    bool isRegistered() override { return false; }
    void registerProgram() override {
        throw PlatformError(QStringLiteral("LoginItem"), 1,
                            QStringLiteral("this session has no login items"));
    }
    void unregisterProgram() override {}
};

} // namespace talvera
