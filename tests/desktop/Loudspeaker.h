// SPDX-License-Identifier: MIT
#pragma once

#include <QProcess>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>

namespace talvera::test {

/// What the desktop's loudspeaker plays from now on. Throws std::runtime_error when it can't be heard.
class Loudspeaker {
public:
    Loudspeaker() {
        m_listener.start("parec", {"--device=@DEFAULT_MONITOR@", "--format=s16le", "--rate=16000",
                                   "--channels=1", "--latency-msec=20"});
        if (!m_listener.waitForReadyRead(patience)) // there is silence to hear
            throw std::runtime_error("the loudspeaker can't be heard");
    }
    ~Loudspeaker() {
        m_listener.kill();
        m_listener.waitForFinished();
    }

    /// Waits until something is played; false when nothing is in time.
    bool hearsSomething() {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(patience);
        while (std::chrono::steady_clock::now() < deadline) {
            if (!m_listener.waitForReadyRead(patience))
                return false;
            const auto heard = m_listener.readAllStandardOutput();
            const auto* samples = reinterpret_cast<const std::int16_t*>(heard.constData());
            if (std::any_of(samples, samples + heard.size() / 2, [](auto s) { return std::abs(s) > 50; }))
                return true;
        }
        return false;
    }

private:
    static constexpr int patience = 30'000; // milliseconds

    QProcess m_listener;
};

} // namespace talvera::test
