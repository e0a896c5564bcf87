// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Published.h"

namespace talvera {

class WhisperRunner;

/// Whether the recogniser has shown yet that it works, and what makes it: its first run, which has to load
/// the model. Main thread only.
class RecognitionWarmup {
public:
    virtual ~RecognitionWarmup() = default;

    /// A run of the recogniser has succeeded in this process.
    Published<bool> didWhisperWarmup{false};

    /// Starts the first run, once in this process and only if the model is there.
    virtual void kickWhisperOnce(const WhisperRunner& runner) = 0;
};

} // namespace talvera
