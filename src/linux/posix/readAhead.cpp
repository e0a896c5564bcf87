// SPDX-License-Identifier: MIT
#include "linux/posix/readAhead.h"

#include <algorithm>
#include <cerrno>
#include <thread>

#include <fcntl.h>
#include <pthread.h>
#include <sys/stat.h>
#include <sys/uio.h>

namespace talvera {

namespace {

constexpr off_t looks = 64;

/// Small enough that the thread sees the end of the program in between.
constexpr off_t pieceBytes = 4 << 20;

off_t sizeOf(const FileDescriptor& file) {
    struct stat status {};
    return ::fstat(file.get(), &status) == 0 ? status.st_size : 0;
}

/// A read that is not to wait fails where the disk would have to be asked.
bool wouldWait(const FileDescriptor& file, off_t place) {
    char byte = 0;
    const iovec target{&byte, 1};
    return ::preadv2(file.get(), &target, 1, place, RWF_NOWAIT) < 0 && errno == EAGAIN;
}

} // namespace

bool isInMemory(const FileDescriptor& file) {
    const auto step = std::max<off_t>(sizeOf(file) / looks, 1);
    for (off_t place = 0; place < step * looks; place += step) {
        if (wouldWait(file, place))
            return false;
    }
    return true;
}

void readAhead(FileDescriptor file) {
    if (isInMemory(file))
        return;
    std::thread([file = std::move(file)] {
        pthread_setname_np(pthread_self(), "read ahead");
        const auto size = sizeOf(file);
        for (off_t place = 0; place < size; place += pieceBytes)
            ::posix_fadvise(file.get(), place, pieceBytes, POSIX_FADV_WILLNEED);
    }).detach();
}

} // namespace talvera
