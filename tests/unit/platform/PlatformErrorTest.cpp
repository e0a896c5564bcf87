// SPDX-License-Identifier: MIT
#include "platform/system/PlatformError.h"
#include "platform/sound/AudioEngine.h"

#include <gtest/gtest.h>

#include <cerrno>

using namespace talvera;

namespace {

enum class OtherFailure { First = 2 };

QString platformDomain(OtherFailure) {
    return QStringLiteral("Other");
}

TEST(PlatformError, failureOfItsDomain_isFoundAgain) {
    const PlatformError error(AudioEngineFailure::NoInput, QStringLiteral("no microphone"));
    EXPECT_EQ(error.as<AudioEngineFailure>(), AudioEngineFailure::NoInput);
    EXPECT_EQ(error.domain().toStdString(), "AudioEngine");
    EXPECT_EQ(error.code(), 2);
    EXPECT_STREQ(error.what(), "AudioEngine (2): no microphone");
}

TEST(PlatformError, sameCodeOfAnotherDomain_isAnotherFailure) {
    EXPECT_EQ(PlatformError(OtherFailure::First).as<AudioEngineFailure>(), std::nullopt);
    EXPECT_EQ(PlatformError(QStringLiteral("FileSystem"), 2).as<AudioEngineFailure>(), std::nullopt);
}

TEST(PlatformError, systemsErrorNumber_isCompared) {
    const PlatformError error(QStringLiteral("FileSystem"), ENOENT);
    EXPECT_TRUE(error.is(std::errc::no_such_file_or_directory));
    EXPECT_FALSE(error.is(std::errc::no_space_on_device));
}

} // namespace
