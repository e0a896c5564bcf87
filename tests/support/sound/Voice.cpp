// SPDX-License-Identifier: MIT
#include "Voice.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstring>
#include <stdexcept>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace talvera::test {

namespace {

auto firstNumber(const std::vector<std::int16_t>& numbers) {
    return std::find_if(numbers.begin(), numbers.end(), [](std::int16_t number) { return number != 0; });
}

} // namespace

Voice::Voice(const std::string& address, const std::string& sink, int rate, int channels)
    : m_rate(rate) {
    std::array<int, 2> commands{};
    std::array<int, 2> answers{};
    if (pipe2(commands.data(), O_CLOEXEC) != 0 || pipe2(answers.data(), O_CLOEXEC) != 0)
        throw std::runtime_error("no pipe");
    m_program = spawnProgram({VOICE_PROGRAM, address, sink, std::to_string(rate), std::to_string(channels)},
                             {}, Urgency::RealTime, commands[0], answers[1], STDERR_FILENO);
    close(commands[0]);
    close(answers[1]);
    m_commands = commands[1];
    m_answers = answers[0];
    readLine();
}

Voice::~Voice() {
    close(m_commands);
    close(m_answers);
    kill(m_program, SIGKILL);
    waitpid(m_program, nullptr, 0);
}

void Voice::say(const std::vector<std::int16_t>& samples) {
    ask("say " + std::to_string(samples.size()), samples);
}

void Voice::sayAndWait(const std::vector<std::int16_t>& samples) {
    const auto end = ask("say " + std::to_string(samples.size()), samples);
    ask("await " + std::to_string(end));
}

void Voice::count() {
    const auto first = ask("count");
    ask("await " + std::to_string(first + m_rate / 10 + 1));
}

std::int64_t Voice::framesSaid() {
    return ask("said");
}

std::int64_t Voice::frameOf(std::int16_t number, std::int64_t about) {
    const std::int64_t frame = number - 1;
    return frame + (about - frame + countPeriod / 2) / countPeriod * countPeriod;
}

int Voice::gapsIn(const std::vector<std::int16_t>& numbers) {
    int gaps = 0;
    for (auto next = firstNumber(numbers); next != numbers.end() && next + 1 != numbers.end(); ++next)
        gaps += next[1] != *next % countPeriod + 1;
    return gaps;
}

std::int16_t Voice::firstOf(const std::vector<std::int16_t>& numbers) {
    const auto first = firstNumber(numbers);
    return first == numbers.end() ? std::int16_t{0} : *first;
}

std::int64_t Voice::ask(const std::string& command, const std::vector<std::int16_t>& samples) {
    auto message = command + '\n';
    message.append(reinterpret_cast<const char*>(samples.data()), samples.size() * sizeof(std::int16_t));
    for (std::size_t sent = 0; sent < message.size();) {
        const auto count = write(m_commands, message.data() + sent, message.size() - sent);
        if (count <= 0)
            throw std::runtime_error("the voice is gone");
        sent += static_cast<std::size_t>(count);
    }
    return std::stoll(readLine());
}

std::string Voice::readLine() {
    std::string line;
    for (char character = 0; character != '\n'; line += character) {
        if (read(m_answers, &character, 1) != 1)
            throw std::runtime_error("the voice has no sound server");
    }
    return line;
}

} // namespace talvera::test
