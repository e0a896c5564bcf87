// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Task.h"
#include "core/routes/Dictation.h"
#include "language/AIFailure.h"

#include <QString>

#include <optional>

namespace talvera {

class RouteSteps;

/// A request to the language model whose answer is the text of a dictation.
struct ModelRequest {
    QString instructions;
    QString input;
    QString doneTrace; ///< what begins the trace line of its end, such as "AI Cleanup done"
};

/// Why a request has come to no good end, and whether anything had come before.
struct StreamFailure {
    AIFailure reason;
    bool isBeforeFirstPart = false;

    bool isRefusedLanguage() const {
        return isBeforeFirstPart && reason.kind == AIFailure::Case::UnsupportedLanguage;
    }
};

/// Delivers the answer while the model writes it, and finishes the dictation. When the model fails, it tells
/// why, and the dictation isn't finished yet: what has been typed stays, what was to be pasted is dropped.
Task<std::optional<StreamFailure>> deliverAnswer(const RouteSteps& steps, const Dictation& dictation,
                                                 ModelRequest request);

/// The end of a dictation whose model has failed: `fallback` is delivered in place of an answer that has not
/// begun, and the user is told why.
void finishAfterFailure(const RouteSteps& steps, const Dictation& dictation, const StreamFailure& failure,
                        const QString& fallback);

} // namespace talvera
