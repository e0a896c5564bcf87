// SPDX-License-Identifier: MIT
// A shared library that says so when a program loads it.
#include <unistd.h>

[[gnu::constructor]] static void loaded() {
    constexpr char word[] = "planted\n";
    [[maybe_unused]] const auto written = ::write(STDOUT_FILENO, word, sizeof word - 1);
}
