// SPDX-License-Identifier: MIT
#pragma once

#include "core/DictationRequest.h"
#include "core/Trace.h"

#include <QString>

namespace talvera {

class LanguageRecognizer;

/// The ways from a recording to text at the cursor.
enum class Route {
    TranslateDirect = 1, ///< one pass of the recogniser's own translation into English
    Plain = 2,           ///< the transcript as it is
    SecondPass = 3,      ///< a second pass that translates into English
    AITranslate = 4,     ///< the language model translates the transcript
    TwoHopTranslate = 5, ///< the recogniser goes to English, the language model from there
    WhisperFallback = 6, ///< English by the recogniser, for want of a language model
    AICleanup = 7,       ///< the language model cleans the transcript up
};

/// Whether the first pass of the recogniser already translates, which makes it route 1.
bool translatesDirectly(const DictationRequest& request);

/// The route of a dictation whose first pass gave `transcript`.
Route chooseRoute(const DictationRequest& request, const QString& transcript, LanguageRecognizer& recognizer,
                  const Trace& trace);

} // namespace talvera
