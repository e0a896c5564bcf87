// SPDX-License-Identifier: MIT
#include "linux/keyboard/KernelDevice.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <ios>

namespace talvera {

namespace {

using Word = unsigned long; // as the kernel prints them: the highest first, in hexadecimal
constexpr std::size_t wordBits = sizeof(Word) * 8;

std::vector<Word> keyBits(const std::string& node, const std::string& sysfs) {
    const auto name = std::filesystem::path(node).filename();
    std::ifstream file(std::filesystem::path(sysfs) / "class/input" / name / "device/capabilities/key");
    std::vector<Word> words;
    for (Word word = 0; file >> std::hex >> word;)
        words.push_back(word);
    std::ranges::reverse(words);
    return words;
}

} // namespace

std::optional<bool> kernelDeviceHasAnyOf(const std::vector<EvdevCode>& codes, const std::string& node,
                                         const std::string& sysfs) {
    const auto words = keyBits(node, sysfs);
    if (words.empty())
        return std::nullopt;
    return std::ranges::any_of(codes, [&words](EvdevCode code) {
        const auto bit = static_cast<std::size_t>(code);
        return bit / wordBits < words.size() && (words[bit / wordBits] >> bit % wordBits & 1) != 0;
    });
}

} // namespace talvera
