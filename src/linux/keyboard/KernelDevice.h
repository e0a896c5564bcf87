// SPDX-License-Identifier: MIT
#pragma once

#include "linux/keyboard/EvdevKeys.h"

#include <optional>
#include <string>
#include <vector>

namespace talvera {

/// Whether the input device behind `node`, such as /dev/input/event3, can send one of these keys. Nothing
/// when the kernel doesn't say. `sysfs` is where it would say so.
std::optional<bool> kernelDeviceHasAnyOf(const std::vector<EvdevCode>& codes, const std::string& node,
                                         const std::string& sysfs = "/sys");

} // namespace talvera
