// SPDX-License-Identifier: MIT
#pragma once

#include "platform/system/ChildProcess.h"
#include "platform/system/FileSystem.h"

#include <memory>
#include <optional>

namespace talvera {

/// What a run is bound to from its beginning on, as it is on the disk at a moment.
struct RunFiles {
    std::optional<FileStamp> model;
    std::optional<FileStamp> directory; ///< in which it leaves its text, and in no other of the same path

    bool areStill(const RunFiles& before) const {
        const bool isSameDirectory =
            directory && before.directory && directory->isSameFile(*before.directory);
        return model == before.model && isSameDirectory;
    }
};

/// A run of the recognition tool that has begun before its recording was there: the tool loads the model, and
/// waits. One that is destroyed before it was used ends its tool. Any thread.
class PreparedRun {
public:
    PreparedRun(ChildProcessRequest request, const RunFiles& files, std::unique_ptr<PreparedChild> child)
        : m_request(std::move(request))
        , m_files(files)
        , m_child(std::move(child)) {}

    /// Whether it is the run that this request would start, with the files as they are now.
    bool isFor(const ChildProcessRequest& request, const RunFiles& now) const {
        return m_request == request && now.areStill(m_files);
    }

    /// As PreparedChild has them.
    std::optional<ChildProcessResult> finish(const QByteArray& recording) {
        return m_child->finish(recording);
    }
    void end() { m_child->end(); }

private:
    const ChildProcessRequest m_request;
    const RunFiles m_files;
    const std::unique_ptr<PreparedChild> m_child;
};

} // namespace talvera
