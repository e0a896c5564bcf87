// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Task.h"
#include "language/AnswerSanitiser.h"

#include <QString>

#include <memory>
#include <optional>

namespace talvera {

class SnapshotStream;

/// The answer to one request, clean and in parts, to be read one after another. Destroying it cancels the
/// request. Main thread only; it has to outlive each call of next().
class PartStream {
public:
    explicit PartStream(std::unique_ptr<SnapshotStream> snapshots);
    ~PartStream();
    PartStream(const PartStream&) = delete;
    PartStream& operator=(const PartStream&) = delete;

    /// The next part, never an empty one; nothing at the end. Throws LanguageModelError; what was held back
    /// of the answer is dropped then.
    Task<std::optional<QString>> next();

private:
    std::unique_ptr<SnapshotStream> m_snapshots; ///< null when the answer is over
    AnswerSanitiser m_sanitiser;
};

} // namespace talvera
