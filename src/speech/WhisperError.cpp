// SPDX-License-Identifier: MIT
#include "speech/WhisperError.h"

namespace talvera {

WhisperError WhisperError::processFailed(std::int32_t status, const QString& text) {
    WhisperError error(Kind::ProcessFailed,
                       "processFailed(" + std::to_string(status) + ", \"" + text.toStdString() + "\")");
    error.m_status = status;
    error.m_text = text;
    return error;
}

WhisperError WhisperError::missingBinary() {
    return {Kind::MissingBinary, "missingBinary"};
}

WhisperError WhisperError::missingModel() {
    return {Kind::MissingModel, "missingModel"};
}

WhisperError WhisperError::outputUnreadable() {
    return {Kind::OutputUnreadable, "outputUnreadable"};
}

} // namespace talvera
