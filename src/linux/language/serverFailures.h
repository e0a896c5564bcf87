// SPDX-License-Identifier: MIT
#pragma once

#include "platform/language/LanguageModelSession.h"

#include <QByteArray>
#include <QJsonValue>

namespace talvera {

/// The model isn't loaded, and has not been in time.
LanguageModelError modelIsAway();

/// The server that has the model doesn't run, or hasn't got it any more.
LanguageModelError modelIsOff();

/// What came was no whole answer. `what` says for programs how it broke; the user reads other words.
LanguageModelError brokenAnswer(const QString& what);

/// The model's memory doesn't hold the text and its answer.
LanguageModelError contextExceeded();

/// The model would not say that.
LanguageModelError refusedByModel();

/// What a server means by this status and body.
LanguageModelError failureOfStatus(int status, const QByteArray& body);

/// What a server means by an "error" of its own: an object, or a sentence.
LanguageModelError failureOfError(const QJsonValue& error, int status);

} // namespace talvera
