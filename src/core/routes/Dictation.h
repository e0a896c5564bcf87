// SPDX-License-Identifier: MIT
#pragma once

#include "core/DictationRequest.h"
#include "delivery/FocusSnapshot.h"

#include <optional>

namespace talvera {

/// One dictation on its way. `focusSnapshot` is what had the focus when the recording began.
struct Dictation {
    DictationRequest request;
    std::optional<FocusSnapshot> focusSnapshot;
};

} // namespace talvera
