// SPDX-License-Identifier: MIT
// On a file system with a disk behind it: in the build tree, since /tmp may lie in memory.
#include "linux/posix/readAhead.h"
#include "eventually.h"
#include "linux/posix/PosixFileSystem.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>

using namespace talvera;
using namespace talvera::test;

namespace {

class ReadAheadTest : public testing::Test {
protected:
    ReadAheadTest() { files.write(path, QByteArray(32 << 20, 'm')); }

    FileDescriptor opened() const {
        return FileDescriptor(::open(path.toLocal8Bit().constData(), O_RDONLY | O_CLOEXEC));
    }

    /// Puts the file out of memory, where the system lets it go.
    void forget() {
        const auto file = opened();
        ::fsync(file.get());
        ::posix_fadvise(file.get(), 0, 0, POSIX_FADV_DONTNEED);
    }

    PosixFileSystem files;
    QTemporaryDir directory{TALVERA_BUILD_DIRECTORY "/read-ahead-XXXXXX"};
    QString path = directory.path() + "/model";
};

TEST_F(ReadAheadTest, fileThatWasJustWritten_isInMemory) {
    EXPECT_TRUE(isInMemory(opened()));
}

TEST_F(ReadAheadTest, fileOnTheDisk_comesIntoMemory) {
    forget();
    files.readAhead(path);
    EXPECT_TRUE(eventually([this] { return isInMemory(opened()); }));
}

TEST_F(ReadAheadTest, emptyFile_isInMemory) {
    files.write(path, {});
    EXPECT_TRUE(isInMemory(opened()));
    files.readAhead(path);
}

} // namespace
