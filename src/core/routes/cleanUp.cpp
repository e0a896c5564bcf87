// SPDX-License-Identifier: MIT
#include "core/routes/RouteSteps.h"
#include "core/routes/StreamedAnswer.h"
#include "core/routes/routes.h"
#include "language/AICleanup.h"
#include "persistence/AppSettings.h"

namespace talvera {

Task<void> cleanUp(const RouteSteps& steps, const Dictation& dictation, const QString& transcript) {
    steps.updateHUD(DictationHUDState::Translating{QStringLiteral("cleanup")});
    steps.trace(QStringLiteral("AI Cleanup started (backend=%1).").arg(steps.backendName()));
    // The one setting that is read now and not at release.
    const auto tone = steps.parts().settings.cleanupTone.get();
    ModelRequest request{AICleanup::cleanupInstructions(tone), transcript, QStringLiteral("AI Cleanup done")};
    auto answer = deliverAnswer(steps, dictation, request);
    const auto failure = co_await answer;
    if (!failure)
        co_return;
    steps.trace(
        QStringLiteral("AI Cleanup failed: %1. Falling back to raw transcript.").arg(failure->reason.text()));
    finishAfterFailure(steps, dictation, *failure, transcript);
}

} // namespace talvera
