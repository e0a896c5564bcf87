// SPDX-License-Identifier: MIT
#pragma once

#include "shell/FramedWindow.h"

namespace talvera {

/// The wizard's window on the screen.
class WizardWindow : public FramedWindow {};

} // namespace talvera
