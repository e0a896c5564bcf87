// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <string>

namespace talvera {

/// A text that is wiped from memory when its last holder lets go of it.
using WipedText = std::shared_ptr<const std::string>;

/// Memory for a text of `size` bytes, to be filled and then shared as WipedText.
std::shared_ptr<std::string> makeWipedText(std::size_t size);

} // namespace talvera
