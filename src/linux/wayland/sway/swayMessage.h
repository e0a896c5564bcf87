// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <cstdint>
#include <optional>

namespace talvera {

/// What stands before each message to sway and from it, in the byte order of the machine.
struct SwayMessageHeader {
    std::uint32_t length = 0; ///< of what follows, in bytes
    std::uint32_t type = 0;

    static constexpr qsizetype size = 14;
    static constexpr std::uint32_t longestPayload = 64U * 1024 * 1024;

    QByteArray bytes() const;

    /// Nothing if that is no header, or that of a message longer than any is.
    static std::optional<SwayMessageHeader> of(const QByteArray& bytes);
};

} // namespace talvera
