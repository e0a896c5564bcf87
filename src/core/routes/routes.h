// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Task.h"
#include "core/routes/Dictation.h"

#include <QString>

namespace talvera {

class RouteSteps;

// The ways from a recording to text at the cursor. Each takes its dictation to the end, whatever happens: the
// recording deleted, the menu bar's state out of transcribing. Main thread only; the arguments outlive the
// run. `transcript` is what the first pass of the recogniser gave, never empty.

/// One pass of the recogniser's own translation into English.
Task<void> translateDirect(const RouteSteps& steps, const Dictation& dictation);

/// The transcript as it is.
void insertPlain(const RouteSteps& steps, const Dictation& dictation, const QString& transcript);

/// A second pass of the recogniser, which translates into English.
Task<void> translateInSecondPass(const RouteSteps& steps, const Dictation& dictation,
                                 const QString& transcript);

/// The language model translates the transcript. Speech in a language that it refuses goes in two hops.
Task<void> translateByModel(const RouteSteps& steps, const Dictation& dictation, const QString& transcript);

/// The recogniser goes to English, the language model from there.
Task<void> translateInTwoHops(const RouteSteps& steps, const Dictation& dictation);

/// English by the recogniser, for want of a language model.
Task<void> fallBackToWhisper(const RouteSteps& steps, const Dictation& dictation);

/// The language model cleans the transcript up.
Task<void> cleanUp(const RouteSteps& steps, const Dictation& dictation, const QString& transcript);

} // namespace talvera
