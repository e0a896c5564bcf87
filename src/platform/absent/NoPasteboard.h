// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/Pasteboard.h"

namespace talvera {

/// A session without a clipboard that we could set. Any thread.
class NoPasteboard final : public Pasteboard {
public:
    bool setString(const QString&) override { return false; }
    State state() override { return {}; }
};

} // namespace talvera
