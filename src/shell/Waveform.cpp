// SPDX-License-Identifier: MIT
#include "shell/Waveform.h"

#include <algorithm>
#include <cmath>

namespace talvera {

double Waveform::barHeight(int bar, double time, double level) {
    const double u = time * 1.2;
    const double w = std::sin(bar * 0.33 + u * 2.1) * 0.5 + std::sin(bar * 0.77 + u * 3.7) * 0.3 +
                     std::sin(bar * 1.13 + u * 5.3) * 0.2;
    const double amplitude = (level + 0.1) * std::abs(w);
    return std::clamp(amplitude, 0.08, 1.0) * tallest;
}

void EasedLevel::goTo(double level, Instant now) {
    m_from = at(now);
    m_to = level;
    m_start = now;
}

double EasedLevel::at(Instant now) const {
    const double passed = std::clamp(toSeconds(now - m_start) / toSeconds(ease), 0.0, 1.0);
    const double rest = 1 - passed;
    return m_from + (m_to - m_from) * (1 - rest * rest);
}

} // namespace talvera
