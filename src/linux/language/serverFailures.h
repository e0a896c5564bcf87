// SPDX-License-Identifier: MIT
#pragma once

#include "platform/language/LanguageModelSession.h"

#include <QByteArray>
#include <QJsonObject>

namespace talvera {

/// The model's server isn't there, or not in time.
LanguageModelError modelIsAway();

/// What came was no whole answer. `what` says for programs how it broke; the user reads other words.
LanguageModelError brokenAnswer(const QString& what);

/// The model's memory doesn't hold the text and its answer.
LanguageModelError contextExceeded();

/// The model would not say that.
LanguageModelError refusedByModel();

/// What a server means by this status and body.
LanguageModelError failureOfStatus(int status, const QByteArray& body);

/// What a server means by an "error" of its own.
LanguageModelError failureOfError(const QJsonObject& error, int status);

} // namespace talvera
