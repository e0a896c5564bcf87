// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <memory>
#include <string.h>
#include <vector>

namespace talvera {

// What was said is overwritten once it has served, so that it isn't found in memory that is used again,
// swapped out or left behind by a crash.

/// Overwrites the bytes and empties the array. Bytes that others share are theirs to wipe.
inline void wipe(QByteArray& bytes) {
    if (!bytes.isEmpty() && bytes.isDetached())
        ::explicit_bzero(bytes.data(), static_cast<std::size_t>(bytes.size()));
    bytes.clear();
}

/// The same for a text.
inline void wipe(QString& text) {
    if (!text.isEmpty() && text.isDetached())
        ::explicit_bzero(text.data(), static_cast<std::size_t>(text.size()) * sizeof(QChar));
    text.clear();
}

/// Wipes what it gives back, so also what a growing container leaves behind.
template <typename T>
struct WipingAllocator {
    using value_type = T;

    WipingAllocator() = default;
    template <typename Other>
    WipingAllocator(const WipingAllocator<Other>&) {
    } // NOLINT(google-explicit-constructor): as allocators are

    T* allocate(std::size_t count) { return std::allocator<T>().allocate(count); }
    void deallocate(T* memory, std::size_t count) {
        ::explicit_bzero(memory, count * sizeof(T));
        std::allocator<T>().deallocate(memory, count);
    }

    bool operator==(const WipingAllocator&) const { return true; }
};

template <typename T>
using WipedVector = std::vector<T, WipingAllocator<T>>;

/// Overwrites the values and empties the vector, which keeps its memory.
template <typename T, typename Allocator>
void wipe(std::vector<T, Allocator>& values) {
    if (!values.empty())
        ::explicit_bzero(values.data(), values.size() * sizeof(T));
    values.clear();
}

/// Wipes something at the end of a block, however the block is left.
template <typename T>
class WipedAtEnd {
public:
    explicit WipedAtEnd(T& wiped)
        : m_wiped(wiped) {}
    WipedAtEnd(const WipedAtEnd&) = delete;
    WipedAtEnd& operator=(const WipedAtEnd&) = delete;
    ~WipedAtEnd() { wipe(m_wiped); }

private:
    T& m_wiped;
};

} // namespace talvera
