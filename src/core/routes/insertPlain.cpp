// SPDX-License-Identifier: MIT
#include "core/routes/RouteSteps.h"
#include "core/routes/routes.h"

namespace talvera {

void insertPlain(const RouteSteps& steps, const Dictation& dictation, const QString& transcript) {
    steps.deliver(dictation, transcript);
    steps.finishDictation(dictation.request.wav);
}

} // namespace talvera
