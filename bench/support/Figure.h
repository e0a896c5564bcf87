// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace talvera::bench {

using Clock = std::chrono::steady_clock;

double milliseconds(Clock::duration duration);

/// What a figure should be.
struct Aim {
    enum class Kind { Below, AtMost, AtLeast };

    static Aim below(double limit) { return {Kind::Below, limit}; }
    static Aim atMost(double limit) { return {Kind::AtMost, limit}; }
    static Aim atLeast(double limit) { return {Kind::AtLeast, limit}; }

    bool isMetBy(double value) const;

    Kind kind;
    double limit;
};

/// A row of the table that `./dev bench` prints: something that was measured, as a rule several times.
class Figure {
public:
    explicit Figure(std::string what, std::string unit = "ms");

    void add(double value) { m_values.push_back(value); }

    /// The middle one of what was added. Throws std::runtime_error when nothing was.
    double median() const;

    /// Prints the median, the least and the most, or the value when there is but one, and whether it is as it
    /// should be.
    void print(std::optional<Aim> aim = std::nullopt) const;

private:
    std::string m_what;
    std::string m_unit;
    std::vector<double> m_values;
};

/// A row with a single value.
void printFigure(const std::string& what, double value, const std::string& unit,
                 std::optional<Aim> aim = std::nullopt);

/// A line of text between the rows.
void printNote(const std::string& text);

} // namespace talvera::bench
