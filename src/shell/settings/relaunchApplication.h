// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

namespace talvera {

class MainActor;
class Relauncher;

/// Ends the program after a moment and starts it anew, as a change of its language asks for. It ends also
/// when nothing can start it again.
void relaunchApplication(MainActor& actor, Relauncher& relauncher, std::function<void()> terminate);

} // namespace talvera
