// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Published.h"
#include "platform/system/Directories.h"
#include "platform/system/FileSystem.h"

#include <QString>

namespace talvera {

/// Knows where the recognition model lies and whether it is complete. It consists of the main model's file
/// and, beside it, of the directory of an encoder that the recogniser finds by itself.
class ModelStore {
public:
    enum class Readiness { Unknown, Ready, Missing };

    /// Creates the two directories; that they can't be created shows only when they are needed. Aborts
    /// when the platform names no application support directory.
    ModelStore(FileSystem& files, const Directories& directories);

    /// Both items are on disk, each in the right kind; neither size nor content is looked at. Any thread.
    bool isReady() const;

    /// How isReady() came out when it was last recorded: a status for observers, and no base for decisions.
    /// Main thread only.
    Published<Readiness>& readiness() { return m_readiness; }

    /// Records how isReady() comes out now. Main thread only.
    void recordReadiness();

    /// Absolute paths; they never change. Any thread.
    const QString applicationSupportDir;
    const QString modelsDir;
    const QString downloadsDir; ///< where downloads lie on their way to modelsDir
    const QString modelMainURL;
    const QString modelEncoderURL;

private:
    FileSystem& m_files;
    Published<Readiness> m_readiness{Readiness::Unknown};
};

} // namespace talvera
