// SPDX-License-Identifier: MIT
#pragma once

namespace talvera {

/// What the session knows us by: the name of our desktop file without its ending, and the class of our
/// windows.
inline constexpr char applicationId[] = "talvera";

} // namespace talvera
