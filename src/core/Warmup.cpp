// SPDX-License-Identifier: MIT
#include "core/Warmup.h"

#include "platform/system/Console.h"

namespace talvera {

void Warmup::primeAll(const WhisperRunner&) {
    m_console.print(QStringLiteral("[warmup] primeAll: scheduling whisper + AI tasks"));
}

} // namespace talvera
