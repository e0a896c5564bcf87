// SPDX-License-Identifier: MIT
#pragma once

#include "Driver.h"

namespace talvera::conformance {

// One file per area adds the operations that question it.
void addDeliveryOperations(Driver& driver);
void addHotkeyOperations(Driver& driver);
void addLanguageOperations(Driver& driver);
void addScenarioOperations(Driver& driver);
void addSettingsOperations(Driver& driver);
void addShellOperations(Driver& driver);
void addSpeechOperations(Driver& driver);
void addStatisticsOperations(Driver& driver);
void addTextOperations(Driver& driver);

/// Adds everything that can be asked.
void addAllOperations(Driver& driver);

} // namespace talvera::conformance
