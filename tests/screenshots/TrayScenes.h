// SPDX-License-Identifier: MIT
#pragma once

namespace talvera::test {

class Stage;

/// The item in trays of several colours. Nothing where no tray program is installed.
void photographTrays(Stage& stage);

} // namespace talvera::test
