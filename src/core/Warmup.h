// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Lifetime.h"
#include "concurrency/Task.h"
#include "shell/onboarding/RecognitionWarmup.h"
#include "speech/WhisperRunner.h"

#include <functional>

namespace talvera {

class BackgroundPool;
class Console;
class LanguageModel;
class MainActor;
class ModelStore;

/// Pays the cost of loading the models before the first dictation has to; what fails of it is printed and
/// forgotten. The models are loaded one after the other, and the recogniser gives way to everything else, so
/// that a login isn't slowed. Main thread only; what runs in the background has to end before it does.
class Warmup final : public RecognitionWarmup {
public:
    /// What it works with; all of it outlives the warm-up.
    struct Parts {
        MainActor& actor;
        BackgroundPool& background;
        FileSystem& files;
        const Directories& directories;
        std::function<QString()> makeFreshName;
        const ModelStore& models;
        LanguageModel& languageModel;
        Console& console;
    };

    explicit Warmup(Parts parts);
    ~Warmup() override;

    /// Called once, at launch.
    void primeAll(const WhisperRunner& runner);

    void kickWhisperOnce(const WhisperRunner& runner) override;

private:
    bool mayKickWhisper();
    Task<void> warmUpWhisper(WhisperRunner runner);
    Task<bool> primeWhisper(WhisperRunner runner);
    Task<void> primeAppleIntelligence();

    const Parts m_parts;
    bool m_kickedWhisper = false;
    Lifetime m_lifetime;
};

} // namespace talvera
