// SPDX-License-Identifier: MIT
#pragma once

namespace talvera {

class Console;
class WhisperRunner;

/// Pays the cost of loading the models before the first dictation has to. Nothing is primed yet.
class Warmup {
public:
    explicit Warmup(Console& console)
        : m_console(console) {}

    /// Called once, at launch.
    void primeAll(const WhisperRunner& runner);

private:
    Console& m_console;
};

} // namespace talvera
