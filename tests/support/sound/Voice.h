// SPDX-License-Identifier: MIT
#pragma once

#include "spawnProgram.h"

#include <cstdint>
#include <string>
#include <vector>

namespace talvera::test {

/// Speaks into a virtual microphone: silence as long as nothing else is asked for. The speaking is done by a
/// program of its own (VoiceProgram.cpp). Every function throws std::runtime_error when the sound server is
/// gone.
class Voice {
public:
    /// Plays to `sink` of the server at `address`, in the sink's own rate; every channel says the same.
    Voice(const std::string& address, const std::string& sink, int rate, int channels = 1);
    Voice(const Voice&) = delete;
    Voice& operator=(const Voice&) = delete;
    ~Voice();

    /// Says these samples once, as soon as possible.
    void say(const std::vector<std::int16_t>& samples);
    /// The same, and returns when they have been said.
    void sayAndWait(const std::vector<std::int16_t>& samples);

    /// From now on says numbers that go up by one with each frame, from 1 to countPeriod and again, so that a
    /// listener knows which frame it hears. Returns when that can be heard.
    void count();
    static constexpr std::int64_t countPeriod = 30000;
    /// The frame near `about` that says this number.
    static std::int64_t frameOf(std::int16_t number, std::int64_t about);
    /// How often the numbers don't follow each other, behind the silence that a recording may begin with.
    static int gapsIn(const std::vector<std::int16_t>& numbers);
    /// The first number; 0 if there is none.
    static std::int16_t firstOf(const std::vector<std::int16_t>& numbers);

    /// The frame, counted from the voice's first, that is being said at this moment.
    std::int64_t framesSaid();

private:
    std::int64_t ask(const std::string& command, const std::vector<std::int16_t>& samples = {});
    std::string readLine();

    pid_t m_program;
    int m_commands = -1; ///< what the program reads
    int m_answers = -1;  ///< what it writes
    std::int64_t m_rate;
};

} // namespace talvera::test
