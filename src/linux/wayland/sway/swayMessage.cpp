// SPDX-License-Identifier: MIT
#include "linux/wayland/sway/swayMessage.h"

#include <cstring>

namespace talvera {

namespace {

constexpr char magic[] = {'i', '3', '-', 'i', 'p', 'c'};
static_assert(SwayMessageHeader::size == sizeof magic + 2 * sizeof(std::uint32_t));

} // namespace

QByteArray SwayMessageHeader::bytes() const {
    QByteArray bytes(magic, sizeof magic);
    bytes.append(reinterpret_cast<const char*>(&length), sizeof length);
    bytes.append(reinterpret_cast<const char*>(&type), sizeof type);
    return bytes;
}

std::optional<SwayMessageHeader> SwayMessageHeader::of(const QByteArray& bytes) {
    if (bytes.size() != size || std::memcmp(bytes.constData(), magic, sizeof magic) != 0)
        return std::nullopt;
    SwayMessageHeader header;
    std::memcpy(&header.length, bytes.constData() + sizeof magic, sizeof header.length);
    std::memcpy(&header.type, bytes.constData() + sizeof magic + sizeof header.length, sizeof header.type);
    return header.length <= longestPayload ? std::optional(header) : std::nullopt;
}

} // namespace talvera
