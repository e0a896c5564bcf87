// SPDX-License-Identifier: MIT
#include "support/Figure.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <stdexcept>

namespace talvera::bench {

namespace {

std::string formatted(const char* format, double value) {
    char text[64];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

const char* sign(Aim::Kind kind) {
    switch (kind) {
    case Aim::Kind::Below:
        return "<";
    case Aim::Kind::AtMost:
        return "<=";
    case Aim::Kind::AtLeast:
        return ">=";
    }
    return "";
}

std::string verdict(const Aim& aim, double value) {
    return std::string("aim ") + sign(aim.kind) + " " + formatted("%g", aim.limit) +
           (aim.isMetBy(value) ? "   met" : "   MISSED");
}

/// Keeps the values for bench/plot, in the file that the environment names, if it does.
void keep(const std::string& what, const std::vector<double>& values, const std::optional<Aim>& aim) {
    const char* path = std::getenv("TALVERA_BENCH_VALUES");
    if (path == nullptr)
        return;
    std::ofstream file(path, std::ios::app);
    file << what << '\t' << (aim ? formatted("%g", aim->limit) : "");
    for (const auto value : values)
        file << '\t' << value;
    file << '\n';
}

} // namespace

double milliseconds(Clock::duration duration) {
    return std::chrono::duration<double, std::milli>(duration).count();
}

bool Aim::isMetBy(double value) const {
    switch (kind) {
    case Kind::Below:
        return value < limit;
    case Kind::AtMost:
        return value <= limit;
    case Kind::AtLeast:
        return value >= limit;
    }
    return false;
}

Figure::Figure(std::string what, std::string unit)
    : m_what(std::move(what))
    , m_unit(std::move(unit)) {}

double Figure::median() const {
    if (m_values.empty())
        throw std::runtime_error("nothing was measured: " + m_what);
    auto sorted = m_values;
    std::sort(sorted.begin(), sorted.end());
    const auto middle = sorted.size() / 2;
    return sorted.size() % 2 == 1 ? sorted[middle] : (sorted[middle - 1] + sorted[middle]) / 2;
}

void Figure::print(std::optional<Aim> aim) const {
    const double value = median();
    keep(m_what, m_values, aim);
    std::string range;
    if (m_values.size() > 1) {
        const auto [least, most] = std::minmax_element(m_values.begin(), m_values.end());
        range = formatted("%.2f", *least) + " to " + formatted("%.2f", *most);
    }
    std::printf("%-66s %9.2f %-5s %-18s %s\n", m_what.c_str(), value, m_unit.c_str(), range.c_str(),
                aim ? verdict(*aim, value).c_str() : "");
    std::fflush(stdout);
}

void printFigure(const std::string& what, double value, const std::string& unit, std::optional<Aim> aim) {
    Figure figure(what, unit);
    figure.add(value);
    figure.print(aim);
}

void printNote(const std::string& text) {
    std::printf("  %s\n", text.c_str());
    std::fflush(stdout);
}

} // namespace talvera::bench
