// SPDX-License-Identifier: MIT
#pragma once

#include "platform/keyboard/EventTap.h"

namespace talvera {

/// A session that doesn't let programs watch keys.
class NoEventTaps final : public EventTapFactory {
public:
    std::unique_ptr<EventTap> create(EventTap::Callback) override { return nullptr; }
};

} // namespace talvera
