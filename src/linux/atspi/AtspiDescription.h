// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

namespace talvera {

/// The address of an object of an application's accessibility tree.
struct AtspiObject {
    std::string service; ///< the application's name on the accessibility bus
    std::string path;

    bool operator==(const AtspiObject&) const = default;
};

/// What such an object says of itself, in the numbers of the accessibility bus.
struct AtspiDescription {
    std::uint32_t role = 0;
    std::uint64_t states = 0; ///< one bit each
    std::vector<std::string> interfaces;

    bool has(int state) const { return (states >> state & 1) != 0; }
    bool offers(const char* interface) const {
        return std::find(interfaces.begin(), interfaces.end(), std::string("org.a11y.atspi.") + interface) !=
               interfaces.end();
    }
};

} // namespace talvera
