// SPDX-License-Identifier: MIT
#include "windows/SettingsVisit.h"

#include "keys.h"

#include <chrono>
#include <stdexcept>
#include <thread>

namespace talvera::bench {

using namespace std::chrono_literals;
using Clock = PaintWitness::Clock;

namespace {

constexpr QSize leastSettings{500, 350};
constexpr auto patience = 60s;

} // namespace

Clock::duration SettingsVisit::open() {
    m_paint.forget();
    const auto told = Clock::now();
    tell(QStringLiteral("--settings"));
    return m_paint.awaitOf(m_agent) - told;
}

void SettingsVisit::showEverySection() {
    for (const auto* section : {"hotkey", "language", "ai", "privacy", "general"}) {
        tell(QStringLiteral("--settings ") + QString::fromLatin1(section));
        std::this_thread::sleep_for(300ms);
    }
}

void SettingsVisit::close() {
    await(true);
    m_keys.tap(test::Key::escape);
    await(false);
}

void SettingsVisit::tell(const QString& purpose) {
    if (!m_second.tellHolder(purpose))
        throw std::runtime_error("the agent doesn't listen");
}

void SettingsVisit::await(bool shown) {
    const auto deadline = Clock::now() + patience;
    for (;;) {
        const auto frame = m_windows.viewable("talvera", leastSettings);
        if (shown ? frame && m_windows.hasKeyboard(*frame) : !frame)
            return;
        if (Clock::now() > deadline)
            throw std::runtime_error(shown ? "the settings don't come" : "the settings don't go");
        std::this_thread::sleep_for(20ms);
    }
}

} // namespace talvera::bench
