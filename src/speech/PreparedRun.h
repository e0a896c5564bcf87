// SPDX-License-Identifier: MIT
#pragma once

#include "platform/system/ChildProcess.h"
#include "platform/system/FileSystem.h"

#include <memory>
#include <optional>

namespace talvera {

/// A run of the recognition tool that has begun before its recording was there: the tool loads the model, and
/// waits. One that is destroyed before it was used ends its tool. Any thread.
class PreparedRun {
public:
    PreparedRun(ChildProcessRequest request, std::optional<FileStamp> model,
                std::unique_ptr<PreparedChild> child)
        : m_request(std::move(request))
        , m_model(model)
        , m_child(std::move(child)) {}

    /// Whether it is the run that this request would start, with the model as it is now.
    bool isFor(const ChildProcessRequest& request, const std::optional<FileStamp>& model) const {
        return m_request == request && m_model == model;
    }

    /// As PreparedChild has them.
    std::optional<ChildProcessResult> finish(const QByteArray& recording) {
        return m_child->finish(recording);
    }
    void end() { m_child->end(); }

private:
    const ChildProcessRequest m_request;
    const std::optional<FileStamp> m_model;
    const std::unique_ptr<PreparedChild> m_child;
};

} // namespace talvera
