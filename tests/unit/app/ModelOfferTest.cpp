// SPDX-License-Identifier: MIT
#include "app/ModelOffer.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace talvera;

namespace {

// This test's program is no diagnostic build, as those that users get are none.
TEST(ModelOffer, programThatUsersGet_hasNoSwitchForAnotherSourceOrMoreTrust) {
    const QTemporaryDir directory;
    QFile file(directory.filePath("offer"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(
        R"({"url": "https://bad.example/model", "sha256": "00", "size": 1, "trusted": "/tmp/ca.pem"})");
    file.close();
    qputenv("TALVERA_TEST_MODEL", file.fileName().toLocal8Bit());
    const auto offer = ModelOffer::ofThisBuild();
    qunsetenv("TALVERA_TEST_MODEL");
    EXPECT_EQ(offer.source.main.url, ModelSource::configured().main.url);
    EXPECT_EQ(offer.source.main.sha256, ModelSource::configured().main.sha256);
    EXPECT_TRUE(offer.trustedToo.isEmpty());
}

} // namespace
