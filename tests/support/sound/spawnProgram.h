// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

namespace talvera::test {

/// How a program stands beside others when the machine is busy, as far as we may ask for it.
enum class Urgency { Nice, RealTime };

/// Starts a program that dies with us. `environment` is in the form NAME=value; PATH is added. The three are
/// its standard input (-1: none), its standard output and its standard error.
pid_t spawnProgram(const std::vector<std::string>& command, std::vector<std::string> environment,
                   Urgency urgency, int input, int output, int error);

} // namespace talvera::test
