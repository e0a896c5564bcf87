// SPDX-License-Identifier: MIT
#pragma once

namespace talvera::test {

class Stage;

/// Every state of the HUD.
void photographHUD(Stage& stage);

} // namespace talvera::test
