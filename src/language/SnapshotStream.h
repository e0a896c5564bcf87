// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/AsyncStream.h"
#include "platform/language/LanguageModelSession.h"

#include <QString>

#include <memory>

namespace talvera {

/// The snapshots of the answer to one request, to be read one after another. Destroying it cancels the
/// request. Main thread only.
class SnapshotStream {
public:
    SnapshotStream(MainActor& actor, std::unique_ptr<LanguageModelSession> session, const QString& prompt);

    /// For co_await: the whole answer so far, or nothing when the last snapshot has been read. Throws
    /// LanguageModelError.
    AsyncStream<QString>::Next next() { return m_snapshots.next(); }

private:
    AsyncStream<QString> m_snapshots;
    std::unique_ptr<LanguageModelSession> m_session; ///< goes first, and with it what it calls
};

} // namespace talvera
