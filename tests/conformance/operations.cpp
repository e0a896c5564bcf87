// SPDX-License-Identifier: MIT
#include "operations.h"

namespace talvera::conformance {

void addAllOperations(Driver& driver) {
    addDeliveryOperations(driver);
    addHotkeyOperations(driver);
    addLanguageOperations(driver);
    addSettingsOperations(driver);
    addSpeechOperations(driver);
    addTextOperations(driver);
}

} // namespace talvera::conformance
