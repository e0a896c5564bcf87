// SPDX-License-Identifier: MIT
#pragma once

#include "core/routes/Dictation.h"
#include "core/routes/RouteSteps.h"

#include <QString>

#include <memory>

namespace talvera {

/// The road from a finished recording to text at the cursor. Whatever happens on it, it ends with the
/// recording deleted and the menu bar's state out of transcribing. Main thread only; keeps nothing between
/// dictations.
class OutputPipeline : public std::enable_shared_from_this<OutputPipeline> {
public:
    using Parts = RouteSteps::Parts;

    explicit OutputPipeline(Parts parts);

    /// Recognises the recording, counts the dictation, chooses its route and takes it to its end.
    Task<void> runPipeline(Dictation dictation);

private:
    Task<void> continueAfterTranscription(Dictation dictation, QString transcript);
    Task<void> runRoute(const Dictation& dictation, const QString& transcript);
    QString polishBackend(const DictationRequest& request) const;

    const RouteSteps m_steps;
};

} // namespace talvera
