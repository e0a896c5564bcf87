// SPDX-License-Identifier: MIT
#pragma once

namespace talvera {

/// Chooses what the toolkit loads for windows on an X server. Before the application object is made.
void prepareToolkitForX11();

} // namespace talvera
