// SPDX-License-Identifier: MIT
#include "models/sha256.h"
#include "FakeFileSystem.h"
#include "models/ModelSource.h"
#include "platform/system/PlatformError.h"

#include <QCryptographicHash>
#include <QRegularExpression>

#include <gtest/gtest.h>

using namespace talvera;
using namespace talvera::test;

namespace {

TEST(Sha256, knownText_hasTheKnownDigest) {
    FakeFileSystem files;
    files.write("/tmp/a", "abc");
    EXPECT_EQ(sha256Hex(files, "/tmp/a"), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
}

TEST(Sha256, emptyFile_hasTheDigestOfNothing) {
    FakeFileSystem files;
    files.write("/tmp/a", {});
    EXPECT_EQ(sha256Hex(files, "/tmp/a"), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
}

TEST(Sha256, filesAroundTheBlocksEdges_areReadToTheLastByte) {
    FakeFileSystem files;
    for (const qsizetype size : {(1 << 20) - 1, 1 << 20, (1 << 20) + 1, 3 * (1 << 20)}) {
        QByteArray bytes(size, 'x');
        bytes.back() = 'y';
        files.write("/tmp/a", bytes);
        const auto digest = QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex();
        EXPECT_EQ(sha256Hex(files, "/tmp/a"), QString::fromLatin1(digest)) << size;
    }
}

TEST(Sha256, missingFile_throws) {
    FakeFileSystem files;
    EXPECT_THROW(sha256Hex(files, "/tmp/none"), PlatformError);
}

TEST(ModelSource, publishedItems_haveTheirDigestsAndSizes) {
    const auto both = ModelSource::of(QUrl("https://a.example/m"), QUrl("https://a.example/e"));
    EXPECT_EQ(both.main.sha256, "19fea4b380c3a618ec4723c3eef2eb785ffba0d0538cf43f8f235e7b3b34220f");
    EXPECT_EQ(both.main.expectedSize, 539212467);
    EXPECT_EQ(both.encoder.sha256, "79b0b8d436d47d3f24dd3afc91f19447dd686a4f37521b2f6d9c30a642133fbd");
    EXPECT_EQ(both.encoder.expectedSize, 314572800);
    EXPECT_TRUE(both.hasEncoder());
}

TEST(ModelSource, withoutAnEncodersAddress_isTheMainFileAlone) {
    const auto alone = ModelSource::of(QUrl("https://a.example/m"));
    EXPECT_FALSE(alone.hasEncoder());
    EXPECT_EQ(alone.encoder.expectedSize, 0);
}

TEST(ModelSource, thisBuild_fetchesTheMainFileSecurely) {
    const auto configured = ModelSource::configured();
    EXPECT_EQ(configured.main.url.scheme(), "https");
    EXPECT_TRUE(configured.main.url.path().endsWith("/ggml-medium-q5_0.bin"));
}

} // namespace
