// SPDX-License-Identifier: MIT
#include "core/routes/StreamedAnswer.h"

#include "concurrency/MainActor.h"
#include "core/routes/RouteSteps.h"
#include "language/AICleanup.h"
#include "language/PartStream.h"

namespace talvera {

Task<std::optional<StreamFailure>> deliverAnswer(const RouteSteps& steps, const Dictation& dictation,
                                                 ModelRequest request) {
    const auto& actor = steps.parts().actor;
    const auto started = actor.now();
    auto delivery = steps.deliverInParts(dictation);
    const auto parts = steps.askModel(request.instructions, request.input);
    QString result;
    bool hasPart = false;
    std::optional<StreamFailure> failure;
    try {
        while (const auto part = co_await parts->next()) {
            hasPart = true;
            delivery.append(*part);
            result += *part;
        }
    } catch (const std::exception& error) {
        failure = {AICleanup::classify(error), !hasPart};
    }
    if (failure)
        co_return failure;
    delivery.finish();
    steps.trace(request.doneTrace + QString::asprintf(" in %.2fs", toSeconds(actor.now() - started)) +
                QStringLiteral(" (%1 chars).").arg(countForTrace(result)));
    steps.finishDictation(dictation.request.wav);
    co_return std::nullopt;
}

void finishAfterFailure(const RouteSteps& steps, const Dictation& dictation, const StreamFailure& failure,
                        const QString& fallback) {
    if (failure.isBeforeFirstPart && !fallback.isEmpty())
        steps.deliver(dictation, fallback);
    steps.showNotice(failure.reason.text(), DictationHUDState::NoticeTone::Warn);
    steps.finishBesideNotice(dictation.request.wav);
}

} // namespace talvera
