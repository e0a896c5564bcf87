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

class Sha256 : public testing::Test {
protected:
    static constexpr qsizetype block = 1 << 20;

    QString digestOf(const QString& path) {
        return sha256Hex(files, path, [] { return false; });
    }

    FakeFileSystem files;
};

TEST_F(Sha256, knownText_hasTheKnownDigest) {
    files.write("/tmp/a", "abc");
    EXPECT_EQ(digestOf("/tmp/a"), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
}

TEST_F(Sha256, emptyFile_hasTheDigestOfNothing) {
    files.write("/tmp/a", {});
    EXPECT_EQ(digestOf("/tmp/a"), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
}

TEST_F(Sha256, filesAroundTheBlocksEdges_areReadToTheLastByte) {
    for (const qsizetype size : {block - 1, block, block + 1, 3 * block}) {
        QByteArray bytes(size, 'x');
        bytes.back() = 'y';
        files.write("/tmp/a", bytes);
        const auto digest = QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex();
        EXPECT_EQ(digestOf("/tmp/a"), QString::fromLatin1(digest)) << size;
    }
}

TEST_F(Sha256, missingFile_throws) {
    EXPECT_THROW(digestOf("/tmp/none"), PlatformError);
}

TEST_F(Sha256, givenUp_readsNoFurtherThanTheBlock) {
    files.write("/tmp/a", QByteArray(5 * block, 'x'));
    int asked = 0;
    try {
        sha256Hex(files, "/tmp/a", [&] { return ++asked == 2; });
        FAIL() << "it has read on";
    } catch (const PlatformError& error) {
        EXPECT_TRUE(error.is(std::errc::operation_canceled));
    }
    EXPECT_EQ(asked, 2);
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
