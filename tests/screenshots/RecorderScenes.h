// SPDX-License-Identifier: MIT
#pragma once

namespace talvera::test {

class Stage;

/// Pictures of the field that records shortcuts, in each of its states.
void photographRecorder(Stage& stage);

} // namespace talvera::test
