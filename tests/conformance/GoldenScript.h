// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

namespace talvera::conformance {

/// One request line, and the answer that it must get.
struct Exchange {
    std::string request;
    std::string answer;
    int line = 0; ///< of the request in its script
};

/// The exchanges of tests/conformance/golden/`name`: a line "> request" is followed by a line "< answer"; the
/// other lines are for the reader.
std::vector<Exchange> goldenScript(const std::string& name);

/// The names of all scripts.
std::vector<std::string> goldenScriptNames();

} // namespace talvera::conformance
