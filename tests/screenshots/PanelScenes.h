// SPDX-License-Identifier: MIT
#pragma once

namespace talvera::test {

class Stage;

/// Every state of the panel that opens at the item in the tray.
void photographPanel(Stage& stage);

} // namespace talvera::test
