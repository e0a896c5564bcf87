// SPDX-License-Identifier: MIT
#pragma once

namespace talvera::test {

class Stage;

/// The settings window, section by section.
void photographSettings(Stage& stage);

} // namespace talvera::test
