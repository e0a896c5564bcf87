// SPDX-License-Identifier: MIT
#pragma once

#include "platform/language/LanguageModel.h"

#include <QString>

namespace talvera {

/// What a reason means that comes in words from outside; capitals play no part. One that we don't know yet
/// counts as DeviceNotEligible.
LanguageModel::UnavailableReason unavailableReasonFromWords(const QString& words);

} // namespace talvera
