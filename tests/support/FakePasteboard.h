// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/Pasteboard.h"

#include <QStringList>

#include <atomic>
#include <mutex>
#include <optional>

namespace talvera::test {

/// A clipboard in memory that remembers all that was ever put on it.
class FakePasteboard final : public Pasteboard {
public:
    bool setString(const QString& text) override;

    /// What a paste would give now; nothing while something other than text is on the clipboard.
    std::optional<QString> string() const;

    /// Every text that was put here, oldest first.
    QStringList history() const;

    /// From now on nothing can be put here.
    void refuse() { m_refuses = true; }

    /// Another program puts an image on the clipboard.
    void setImage();

private:
    mutable std::mutex m_mutex;
    std::atomic<bool> m_refuses = false;
    std::optional<QString> m_string;
    QStringList m_history;
};

} // namespace talvera::test
