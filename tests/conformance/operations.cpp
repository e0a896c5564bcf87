// SPDX-License-Identifier: MIT
#include "operations.h"

namespace talvera::conformance {

void addAllOperations(Driver& driver) {
    addLanguageOperations(driver);
    addSettingsOperations(driver);
}

} // namespace talvera::conformance
