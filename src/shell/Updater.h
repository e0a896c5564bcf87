// SPDX-License-Identifier: MIT
#pragma once

namespace talvera {

/// Looks for new versions. There is no feed to ask yet.
class Updater {
public:
    void checkForUpdates() {}
};

} // namespace talvera
