// SPDX-License-Identifier: MIT
#include "language/SnapshotStream.h"

#include <exception>
#include <utility>

namespace talvera {

SnapshotStream::SnapshotStream(MainActor& actor, std::unique_ptr<LanguageModelSession> session,
                               const QString& prompt)
    : m_snapshots(actor)
    , m_session(std::move(session)) {
    m_session->streamResponse(
        prompt,
        {.onSnapshot = [this](const QString& content) { m_snapshots.push(content); },
         .onFinished = [this] { m_snapshots.finish(); },
         .onFailed =
             [this](const LanguageModelError& error) { m_snapshots.fail(std::make_exception_ptr(error)); }});
}

} // namespace talvera
