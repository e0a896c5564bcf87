// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/Pasteboard.h"

#include <QStringList>

#include <atomic>
#include <functional>
#include <mutex>
#include <optional>

namespace talvera::test {

/// A clipboard in memory that remembers all that was ever put on it.
class FakePasteboard final : public Pasteboard {
public:
    bool setString(const QString& text) override;
    State state() override;

    /// What a program gets that pastes now; it counts as a request.
    QString paste();

    /// What a paste would give now; nothing while something other than text is on the clipboard.
    std::optional<QString> string() const;

    /// Every text that was put here, oldest first.
    QStringList history() const;

    /// Another program takes the clipboard as soon as a text is put here.
    void beTakenBy(const QString& text) { m_taker = text; }
    void beLeftAlone() { m_taker.reset(); }

    /// From now on nothing can be put here.
    void refuse() { m_refuses = true; }
    void accept() { m_refuses = false; }
    bool refuses() const { return m_refuses; }

    /// Told of each text that is refused, or taken over at once.
    std::function<void()> onRefused;
    std::function<void()> onTaken;

    /// Another program puts an image on the clipboard.
    void setImage();

private:
    mutable std::mutex m_mutex;
    std::atomic<bool> m_refuses = false;
    std::optional<QString> m_string;
    std::optional<QString> m_taker;
    State m_state;
    QStringList m_history;
};

} // namespace talvera::test
