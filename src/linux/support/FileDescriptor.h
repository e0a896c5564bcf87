// SPDX-License-Identifier: MIT
#pragma once

#include <utility>

#include <unistd.h>

namespace talvera {

/// Owns a file descriptor and closes it.
class FileDescriptor {
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int descriptor)
        : m_descriptor(descriptor) {}
    FileDescriptor(FileDescriptor&& other) noexcept
        : m_descriptor(other.release()) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        if (this != &other) {
            reset();
            m_descriptor = other.release();
        }
        return *this;
    }
    ~FileDescriptor() { reset(); }

    bool isOpen() const { return m_descriptor >= 0; }
    int get() const { return m_descriptor; }

    /// Gives the descriptor away; the caller closes it.
    int release() { return std::exchange(m_descriptor, -1); }

    /// Closes it, and answers what close() said: a late write error shows there.
    int reset() { return isOpen() ? ::close(release()) : 0; }

private:
    int m_descriptor = -1;
};

} // namespace talvera
