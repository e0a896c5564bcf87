// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Published.h"
#include "platform/system/Directories.h"
#include "platform/system/FileSystem.h"

#include <QString>

namespace talvera {

/// Knows where the recognition model lies and whether it is complete. It consists of the main model's file
/// and, for recognisers that can use one, of the directory of an encoder beside it, which they find by
/// themselves.
class ModelStore {
public:
    enum class Readiness { Unknown, Ready, Missing };

    enum class Items { MainFileAlone, MainFileAndEncoder };

    /// Creates the two directories; that they can't be created shows only when they are needed. Aborts
    /// when the platform names no application support directory.
    ModelStore(FileSystem& files, const Directories& directories, Items items);

    /// All items are on disk, each in the right kind; neither size nor content is looked at. Any thread.
    bool isReady() const;

    /// The item is on disk, in the right kind. A model without an encoder lacks none. Any thread.
    bool hasMainFile() const;
    bool hasEncoder() const;

    /// How isReady() came out when it was last recorded: a status for observers, and no base for decisions.
    /// Main thread only.
    Published<Readiness>& readiness() { return m_readiness; }

    /// Records how isReady() comes out now. Main thread only.
    void recordReadiness();

    /// An encoder whose unpacking has begun counts for nothing until it has ended: a next start, of the
    /// program or of a download, discards what a killed or failed one has left. Both throw PlatformError.
    void beginUnpacking();
    void endUnpacking();
    void discardHalfUnpacked();

    /// Absolute paths; they never change. Any thread.
    const QString applicationSupportDir;
    const QString modelsDir;
    const QString downloadsDir; ///< where downloads lie on their way to modelsDir
    const QString modelMainURL;
    const QString modelEncoderURL;

private:
    FileSystem& m_files;
    const Items m_items;
    const QString m_unpackingMark;
    Published<Readiness> m_readiness{Readiness::Unknown};
};

} // namespace talvera
