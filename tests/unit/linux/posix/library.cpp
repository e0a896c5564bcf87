// SPDX-License-Identifier: MIT
// A library to be loaded late: it has a table of constants, and remembers a number.
#include <array>
#include <cstdint>

namespace {

constexpr auto table = [] {
    std::array<std::uint32_t, 64 * 1024> numbers{};
    for (std::uint32_t i = 0; i < numbers.size(); ++i)
        numbers[i] = i * i;
    return numbers;
}();

int remembered = 1;

} // namespace

extern "C" {

std::uint32_t sumOfTable() {
    std::uint32_t sum = 0;
    for (const volatile auto& number : table)
        sum += number;
    return sum;
}

void remember(int number) {
    remembered = number;
}

int whatWasRemembered() {
    return remembered;
}
}
