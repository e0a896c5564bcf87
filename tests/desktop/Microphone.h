// SPDX-License-Identifier: MIT
#pragma once

namespace talvera::test {

/// The desktop's only microphone. Throws std::runtime_error when the sound server refuses.
namespace Microphone {

void unplug();
void plugIn();

} // namespace Microphone

} // namespace talvera::test
