// SPDX-License-Identifier: MIT
#include "linux/pulse/chooseMicrophone.h"

#include <gtest/gtest.h>

using namespace talvera;

namespace {

PulseSource source(const char* name, bool isMonitor = false, bool isUnplugged = false) {
    return {name, {PA_SAMPLE_S16NE, 44100, 2}, {}, isMonitor, isUnplugged};
}

const auto speaker = source("speaker.monitor", true);

} // namespace

TEST(ChooseMicrophone, defaultSource_isTaken) {
    const auto chosen = chooseMicrophone("headset", {source("built-in"), source("headset")});
    ASSERT_TRUE(chosen);
    EXPECT_EQ(chosen->device, "headset");
    EXPECT_TRUE(chosen->isDefault);
}

TEST(ChooseMicrophone, unpluggedDefaultSource_isBelieved) {
    // Some sockets never notice that something is plugged in.
    const auto chosen = chooseMicrophone("rear", {source("rear", false, true), source("built-in")});
    ASSERT_TRUE(chosen);
    EXPECT_EQ(chosen->device, "rear");
}

TEST(ChooseMicrophone, monitorAsDefault_givesWayToAMicrophone) {
    const auto chosen = chooseMicrophone("speaker.monitor", {speaker, source("built-in")});
    ASSERT_TRUE(chosen);
    EXPECT_EQ(chosen->device, "built-in");
    EXPECT_FALSE(chosen->isDefault);
}

TEST(ChooseMicrophone, monitorAsDefaultAndNothingPluggedIn_isNoMicrophone) {
    EXPECT_FALSE(chooseMicrophone("speaker.monitor", {speaker, source("rear", false, true)}));
}

TEST(ChooseMicrophone, noDefault_takesTheFirstMicrophone) {
    const auto chosen = chooseMicrophone("", {speaker, source("built-in"), source("headset")});
    ASSERT_TRUE(chosen);
    EXPECT_EQ(chosen->device, "built-in");
}

TEST(ChooseMicrophone, noSources_isNoMicrophone) {
    EXPECT_FALSE(chooseMicrophone("gone", {}));
}

TEST(ChooseMicrophone, format_isTheSourcesOwnInTheNearestTypeThatWeTake) {
    auto wide = source("interface");
    wide.sampleSpec = {PA_SAMPLE_S32NE, 96000, 4};
    EXPECT_EQ(chooseMicrophone("interface", {wide})->format, (AudioFormat{96000, 4, SampleType::Float32}));
    wide.sampleSpec.format = PA_SAMPLE_FLOAT32NE;
    EXPECT_EQ(chooseMicrophone("interface", {wide})->format, (AudioFormat{96000, 4, SampleType::Float32}));
    wide.sampleSpec = {PA_SAMPLE_S16NE, 8000, 1};
    EXPECT_EQ(chooseMicrophone("interface", {wide})->format, (AudioFormat{8000, 1, SampleType::Int16}));
}

TEST(IsMonitor, unknownDevice_isJudgedByItsName) {
    EXPECT_TRUE(isMonitor("speaker.monitor", {}));
    EXPECT_FALSE(isMonitor("built-in", {}));
    EXPECT_FALSE(isMonitor("odd.monitor", {source("odd.monitor")}));
    EXPECT_TRUE(isMonitor("speaker", {source("speaker", true)}));
}
