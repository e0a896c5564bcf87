// SPDX-License-Identifier: MIT
#pragma once

namespace talvera {

/// Chooses what the toolkit loads for windows on an X server, and has a held key repeat as presses alone,
/// which are not marked as repeats: a view that acts at a press asks itself whether the key is down
/// already. Before the application object is made.
void prepareToolkitForX11();

} // namespace talvera
