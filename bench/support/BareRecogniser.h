// SPDX-License-Identifier: MIT
#pragma once

#include "support/Figure.h"

#include <QString>

#include <string>

namespace talvera::bench {

/// Keeps the recordings that the one agent of this desktop writes, which it would delete.
class RecordingKeeper {
public:
    RecordingKeeper();
    ~RecordingKeeper();
    RecordingKeeper(const RecordingKeeper&) = delete;
    RecordingKeeper& operator=(const RecordingKeeper&) = delete;

    /// Waits for the next recording and answers where it is kept.
    std::string keep();

private:
    void take(const std::string& recording);

    std::string m_directory;
    std::string m_kept;
    int m_watch;
};

/// How long `tool` takes for a recording, with the arguments that the agent would give it and the micro
/// model. Throws std::runtime_error when it fails.
Clock::duration timeOfRecognition(const QString& tool, const std::string& wav, const QString& language);

} // namespace talvera::bench
