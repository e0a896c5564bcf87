// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/Workspace.h"

#include <utility>

namespace talvera {

/// A session that doesn't tell of its applications: none is ever seen.
class NoWorkspace final : public Workspace {
public:
    explicit NoWorkspace(QString ownBundleID)
        : m_ownBundleID(std::move(ownBundleID)) {}

    std::optional<RunningApplication> frontmostApplication() override { return std::nullopt; }
    std::optional<RunningApplication> runningApplication(pid_t) override { return std::nullopt; }
    bool activate(pid_t) override { return false; }
    std::optional<QString> ownBundleID() override { return m_ownBundleID; }

private:
    QString m_ownBundleID;
};

} // namespace talvera
