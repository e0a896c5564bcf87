// SPDX-License-Identifier: MIT
#pragma once

namespace talvera {

/// A descriptor that can be read when the session ends. Whatever else ends the agent is no reason for its
/// companion to end with it.
int endOfSession();

} // namespace talvera
