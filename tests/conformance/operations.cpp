// SPDX-License-Identifier: MIT
#include "operations.h"

namespace talvera::conformance {

void addAllOperations(Driver& driver) {
    addDeliveryOperations(driver);
    addHotkeyOperations(driver);
    addLanguageOperations(driver);
    addScenarioOperations(driver);
    addSettingsOperations(driver);
    addShellOperations(driver);
    addSpeechOperations(driver);
    addStatisticsOperations(driver);
    addTextOperations(driver);
}

} // namespace talvera::conformance
