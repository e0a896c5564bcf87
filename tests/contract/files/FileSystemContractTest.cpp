// SPDX-License-Identifier: MIT
#include "FakeFileSystem.h"
#include "linux/posix/PosixFileSystem.h"
#include "platform/system/PlatformError.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cerrno>

#include <sys/stat.h>

using namespace talvera;
using namespace talvera::test;

namespace {

struct InMemory {
    FakeFileSystem files{{"/private"}};
    QString directory = "/private";
    void makeExecutable(const QString& path) { files.addExecutable(path); }
};

struct OnDisk {
    PosixFileSystem files;
    QTemporaryDir temporary;
    QString directory = temporary.path();
    void makeExecutable(const QString& path) {
        files.write(path, "#!/bin/sh\n");
        ::chmod(path.toLocal8Bit().constData(), 0700);
    }
};

template <typename T>
class FileSystemContract : public testing::Test {
protected:
    T system;
    FileSystem& files = system.files;

    QString at(const char* name) { return system.directory + '/' + QString::fromUtf8(name); }

    /// The errno that `access` fails with; 0 when it doesn't.
    template <typename Access>
    int failure(Access access) {
        try {
            access();
        } catch (const PlatformError& error) {
            EXPECT_EQ(error.domain(), "FileSystem");
            return error.code();
        }
        return 0;
    }
};

using FileSystems = testing::Types<InMemory, OnDisk>;
TYPED_TEST_SUITE(FileSystemContract, FileSystems);

TYPED_TEST(FileSystemContract, writtenFile_readsBackWhole) {
    const QByteArray bytes("a\0b\xFF\n", 5);
    this->files.write(this->at("a"), bytes);
    EXPECT_EQ(this->files.read(this->at("a")), bytes);
    EXPECT_EQ(this->files.size(this->at("a")), 5);
    EXPECT_TRUE(this->files.exists(this->at("a")));
    EXPECT_FALSE(this->files.isDirectory(this->at("a")));
    EXPECT_FALSE(this->files.isExecutableFile(this->at("a")));
}

TYPED_TEST(FileSystemContract, emptyFile_isAFile) {
    this->files.write(this->at("a"), {});
    EXPECT_EQ(this->files.read(this->at("a")), QByteArray());
    EXPECT_EQ(this->files.size(this->at("a")), 0);
    EXPECT_TRUE(this->files.exists(this->at("a")));
}

TYPED_TEST(FileSystemContract, largeFile_readsBackWhole) {
    QByteArray bytes;
    for (int i = 0; i < 1'000'000; ++i)
        bytes.append(static_cast<char>(i * 31));
    this->files.write(this->at("a"), bytes);
    EXPECT_TRUE(this->files.read(this->at("a")) == bytes);
}

TYPED_TEST(FileSystemContract, shorterContents_replaceLongerOnes) {
    this->files.write(this->at("a"), "long contents");
    this->files.write(this->at("a"), "short");
    EXPECT_EQ(this->files.read(this->at("a")), "short");
}

TYPED_TEST(FileSystemContract, namesOfAllKinds_areTaken) {
    for (const auto* name : {"with blank", "quote\"'", "Größe.wav", "новый", "-rf", "a.b.c"}) {
        this->files.write(this->at(name), name);
        EXPECT_EQ(this->files.read(this->at(name)), name);
    }
}

TYPED_TEST(FileSystemContract, missingFile_isToldAsSuch) {
    EXPECT_EQ(this->failure([&] { this->files.read(this->at("none")); }), ENOENT);
    EXPECT_EQ(this->failure([&] { this->files.remove(this->at("none")); }), ENOENT);
    EXPECT_FALSE(this->files.exists(this->at("none")));
    EXPECT_FALSE(this->files.isDirectory(this->at("none")));
    EXPECT_FALSE(this->files.isExecutableFile(this->at("none")));
    EXPECT_EQ(this->files.size(this->at("none")), std::nullopt);
}

TYPED_TEST(FileSystemContract, missingDirectory_isNotMadeByAWrite) {
    EXPECT_EQ(this->failure([&] { this->files.write(this->at("none/a"), "x"); }), ENOENT);
    EXPECT_FALSE(this->files.exists(this->at("none")));
}

TYPED_TEST(FileSystemContract, fileInTheWayOfADirectory_isToldAsSuch) {
    this->files.write(this->at("a"), "x");
    EXPECT_EQ(this->failure([&] { this->files.write(this->at("a/b"), "x"); }), ENOTDIR);
    EXPECT_EQ(this->failure([&] { this->files.createDirectories(this->at("a")); }), EEXIST);
    EXPECT_EQ(this->failure([&] { this->files.createDirectories(this->at("a/b/c")); }), ENOTDIR);
}

TYPED_TEST(FileSystemContract, directory_isNoFile) {
    this->files.createDirectories(this->at("d/e"));
    EXPECT_TRUE(this->files.isDirectory(this->at("d/e")));
    EXPECT_TRUE(this->files.exists(this->at("d")));
    EXPECT_FALSE(this->files.isExecutableFile(this->at("d")));
    EXPECT_EQ(this->files.size(this->at("d")), std::nullopt);
    EXPECT_EQ(this->failure([&] { this->files.read(this->at("d")); }), EISDIR);
    EXPECT_EQ(this->failure([&] { this->files.write(this->at("d"), "x"); }), EISDIR);
    EXPECT_TRUE(this->files.isDirectory(this->at("d/e")));
}

TYPED_TEST(FileSystemContract, directoryThatExists_isFine) {
    this->files.createDirectories(this->at("d/e"));
    this->files.write(this->at("d/e/a"), "x");
    this->files.createDirectories(this->at("d/e"));
    EXPECT_EQ(this->files.read(this->at("d/e/a")), "x");
}

TYPED_TEST(FileSystemContract, removal_takesFilesAndEmptyDirectories) {
    this->files.createDirectories(this->at("d"));
    this->files.write(this->at("d/a"), "x");
    EXPECT_EQ(this->failure([&] { this->files.remove(this->at("d")); }), ENOTEMPTY);
    this->files.remove(this->at("d/a"));
    this->files.remove(this->at("d"));
    EXPECT_FALSE(this->files.exists(this->at("d")));
}

TYPED_TEST(FileSystemContract, blocks_areTheFileInOrder) {
    const QByteArray bytes("0123456789");
    this->files.write(this->at("a"), bytes);
    for (const qint64 size : {1, 3, 5, 10, 100}) {
        QByteArray read;
        qint64 shorter = 0;
        this->files.readBlocks(this->at("a"), size, [&](QByteArrayView block) {
            EXPECT_LE(block.size(), size);
            shorter += block.size() < size ? 1 : 0;
            read.append(block.data(), block.size());
        });
        EXPECT_EQ(read, bytes);
        EXPECT_LE(shorter, 1);
    }
}

TYPED_TEST(FileSystemContract, blocksOfAnEmptyFile_areNone) {
    this->files.write(this->at("a"), {});
    this->files.readBlocks(this->at("a"), 10, [](QByteArrayView) { ADD_FAILURE(); });
    EXPECT_EQ(this->failure([&] { this->files.readBlocks(this->at("none"), 10, [](QByteArrayView) {}); }),
              ENOENT);
}

TYPED_TEST(FileSystemContract, movedFile_hasTheNewNameAlone) {
    this->files.createDirectories(this->at("d"));
    this->files.write(this->at("a"), "x");
    this->files.move(this->at("a"), this->at("d/b"));
    EXPECT_FALSE(this->files.exists(this->at("a")));
    EXPECT_EQ(this->files.read(this->at("d/b")), "x");
}

TYPED_TEST(FileSystemContract, movedFile_replacesAFileButNoDirectory) {
    this->files.createDirectories(this->at("d"));
    this->files.write(this->at("a"), "new");
    this->files.write(this->at("b"), "old");
    this->files.move(this->at("a"), this->at("b"));
    EXPECT_EQ(this->files.read(this->at("b")), "new");
    EXPECT_EQ(this->failure([&] { this->files.move(this->at("b"), this->at("d")); }), EISDIR);
    EXPECT_EQ(this->files.read(this->at("b")), "new");
}

TYPED_TEST(FileSystemContract, moveFromOrToNowhere_isToldAsSuch) {
    this->files.write(this->at("a"), "x");
    EXPECT_EQ(this->failure([&] { this->files.move(this->at("none"), this->at("b")); }), ENOENT);
    EXPECT_EQ(this->failure([&] { this->files.move(this->at("a"), this->at("none/b")); }), ENOENT);
    EXPECT_EQ(this->failure([&] { this->files.move(this->at("a"), this->at("a/b")); }), ENOTDIR);
    EXPECT_EQ(this->files.read(this->at("a")), "x");
}

TYPED_TEST(FileSystemContract, removalOfAll_takesADirectoryWithWhatItHolds) {
    this->files.createDirectories(this->at("d/e/f"));
    this->files.write(this->at("d/e/a"), "x");
    this->files.write(this->at("d2"), "x");
    this->files.removeAll(this->at("d"));
    EXPECT_FALSE(this->files.exists(this->at("d")));
    EXPECT_FALSE(this->files.exists(this->at("d/e/a")));
    EXPECT_TRUE(this->files.exists(this->at("d2")));
    this->files.removeAll(this->at("d2"));
    EXPECT_FALSE(this->files.exists(this->at("d2")));
    EXPECT_EQ(this->failure([&] { this->files.removeAll(this->at("d")); }), 0);
}

TYPED_TEST(FileSystemContract, roomOnADiskThatIsNotThere_isUnknown) {
    EXPECT_EQ(this->files.availableBytes(this->at("none")), std::nullopt);
}

TYPED_TEST(FileSystemContract, stamp_isTheFilesAsLongAsNobodyTouchesIt) {
    this->files.write(this->at("model"), "the model");
    const auto stamp = this->files.stamp(this->at("model"));
    ASSERT_TRUE(stamp);
    this->files.read(this->at("model"));
    EXPECT_EQ(this->files.stamp(this->at("model")), stamp);
    this->files.write(this->at("other"), "the model");
    EXPECT_NE(this->files.stamp(this->at("other")), stamp);
    this->files.move(this->at("other"), this->at("model"));
    EXPECT_NE(this->files.stamp(this->at("model")), stamp) << "another file of the same name and length";
    this->files.write(this->at("model"), "another model");
    EXPECT_NE(this->files.stamp(this->at("model")), stamp);
    this->files.remove(this->at("model"));
    EXPECT_EQ(this->files.stamp(this->at("model")), std::nullopt);
}

TYPED_TEST(FileSystemContract, stampOfADirectory_tellsItFromOthersWhateverIsInIt) {
    this->files.createDirectories(this->at("one"));
    this->files.createDirectories(this->at("other"));
    const auto stamp = this->files.stamp(this->at("one"));
    ASSERT_TRUE(stamp);
    this->files.write(this->at("one/file"), "content");
    EXPECT_TRUE(this->files.stamp(this->at("one"))->isSameFile(*stamp));
    EXPECT_FALSE(this->files.stamp(this->at("other"))->isSameFile(*stamp));
    EXPECT_FALSE(this->files.stamp(this->at("one/file"))->isSameFile(*stamp));
}

TYPED_TEST(FileSystemContract, readingAhead_needsNoFileAndChangesNone) {
    this->files.readAhead(this->at("none"));
    this->files.readAhead(this->system.directory);
    this->files.write(this->at("model"), "the model");
    this->files.readAhead(this->at("model"));
    EXPECT_EQ(this->files.read(this->at("model")), "the model");
}

TYPED_TEST(FileSystemContract, executableFile_isKnown) {
    this->system.makeExecutable(this->at("tool"));
    EXPECT_TRUE(this->files.isExecutableFile(this->at("tool")));
}

} // namespace
