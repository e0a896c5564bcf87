// SPDX-License-Identifier: MIT
#include "GoldenScript.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace talvera::conformance {

namespace {

const std::filesystem::path scripts = TALVERA_GOLDEN_SCRIPTS;

} // namespace

std::vector<Exchange> goldenScript(const std::string& name) {
    std::vector<Exchange> exchanges;
    std::ifstream script(scripts / name);
    int number = 0;
    for (std::string line; std::getline(script, line);) {
        ++number;
        if (line.starts_with('>'))
            exchanges.push_back({line.substr(std::min<size_t>(2, line.size())), {}, number});
        else if (line.starts_with("< "))
            exchanges.back().answer = line.substr(2);
    }
    return exchanges;
}

std::vector<std::string> goldenScriptNames() {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(scripts))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace talvera::conformance
