// SPDX-License-Identifier: MIT
#include "language/PartStream.h"

#include "language/SnapshotStream.h"

#include <utility>

namespace talvera {

PartStream::PartStream(std::unique_ptr<SnapshotStream> snapshots)
    : m_snapshots(std::move(snapshots)) {}

PartStream::~PartStream() = default;

Task<std::optional<QString>> PartStream::next() {
    while (m_snapshots) {
        const auto snapshot = co_await m_snapshots->next();
        auto part = snapshot ? m_sanitiser.take(*snapshot) : m_sanitiser.flush();
        if (!snapshot || m_sanitiser.hasEnded())
            m_snapshots.reset();
        if (!part.isEmpty())
            co_return part;
    }
    co_return std::nullopt;
}

} // namespace talvera
