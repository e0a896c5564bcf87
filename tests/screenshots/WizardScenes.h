// SPDX-License-Identifier: MIT
#pragma once

namespace talvera::test {

class Stage;

/// Every step of the wizard in each of its states.
void photographWizard(Stage& stage);

} // namespace talvera::test
