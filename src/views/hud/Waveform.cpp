// SPDX-License-Identifier: MIT
#include "views/hud/Waveform.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace talvera {

namespace {

/// A sine of a date takes many times as long as one of an angle within a turn.
double withinATurn(double angle) {
    return std::remainder(angle, 2 * std::numbers::pi);
}

} // namespace

Waveform::Waveform(double time, double level)
    : m_level(level) {
    const double u = time * 1.2;
    m_phases = {withinATurn(u * 2.1), withinATurn(u * 3.7), withinATurn(u * 5.3)};
}

double Waveform::barHeight(int bar) const {
    const double w = std::sin(bar * 0.33 + m_phases[0]) * 0.5 + std::sin(bar * 0.77 + m_phases[1]) * 0.3 +
                     std::sin(bar * 1.13 + m_phases[2]) * 0.2;
    const double amplitude = (m_level + 0.1) * std::abs(w);
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
