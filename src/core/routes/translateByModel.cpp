// SPDX-License-Identifier: MIT
#include "core/routes/RouteSteps.h"
#include "core/routes/StreamedAnswer.h"
#include "core/routes/routes.h"
#include "language/AICleanup.h"

namespace talvera {

Task<void> translateByModel(const RouteSteps& steps, const Dictation& dictation, const QString& transcript) {
    const auto& target = dictation.request.target;
    steps.updateHUD(DictationHUDState::Translating{target.displayName});
    steps.trace(
        QStringLiteral("AI Translate to %1 started (backend=%2).").arg(target.code, steps.backendName()));
    ModelRequest request{AICleanup::translationInstructions(target.displayName), transcript,
                         QStringLiteral("AI Translate done")};
    auto answer = deliverAnswer(steps, dictation, request);
    const auto failure = co_await answer;
    if (!failure)
        co_return;
    steps.trace(QStringLiteral("AI Translate failed: %1.").arg(failure->reason.text()));
    // Only the model knows what language it has heard when the user has left that to be found out.
    if (failure->isRefusedLanguage())
        co_await translateInTwoHops(steps, dictation);
    else
        finishAfterFailure(steps, dictation, *failure, transcript);
}

} // namespace talvera
