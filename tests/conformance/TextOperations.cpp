// SPDX-License-Identifier: MIT
#include "operations.h"
#include "shell/settings/StartSound.h"
#include "text/TextCounts.h"

namespace talvera::conformance {

namespace {

Answer countText(const Request& request) {
    const auto counts = talvera::countText(request.text("text"));
    return {{"words", counts.words}, {"characters", counts.characters}};
}

Answer startSound(const Request& request) {
    return {{"name", StartSound::byName(request.text("name")).name.toStdString()}};
}

} // namespace

void addTextOperations(Driver& driver) {
    driver.add("countText", countText);
    driver.add("startSound", startSound);
}

} // namespace talvera::conformance
