// SPDX-License-Identifier: MIT
#include "speech/WavWriter.h"

#include "FakeFileSystem.h"
#include "platform/system/PlatformError.h"

#include <gtest/gtest.h>

using namespace talvera;
using namespace talvera::test;

namespace {

TEST(WavWriter, file_isExactlyThis) {
    const std::vector<std::int16_t> samples = {1, -2, 32767, -32768};
    EXPECT_EQ(wavBytes(samples, 16000).toHex(), "52494646"
                                                "2c000000"
                                                "57415645"
                                                "666d7420"
                                                "10000000"
                                                "0100"
                                                "0100"
                                                "803e0000"
                                                "007d0000"
                                                "0200"
                                                "1000"
                                                "64617461"
                                                "08000000"
                                                "0100"
                                                "feff"
                                                "ff7f"
                                                "0080");
}

TEST(WavWriter, noSamples_giveTheHeaderAlone) {
    const auto bytes = wavBytes({}, 48000);
    EXPECT_EQ(bytes.size(), 44);
    EXPECT_EQ(bytes.mid(4, 4).toHex(), "24000000");
    EXPECT_EQ(bytes.mid(24, 8).toHex(), "80bb0000"
                                        "00770100");
    EXPECT_EQ(bytes.mid(40, 4).toHex(), "00000000");
}

TEST(WavWriter, write_replacesWhatStandsThere) {
    FakeFileSystem files;
    files.write("/tmp/a.wav", QByteArray(1000, 'x'));
    writeWAV(files, std::vector<std::int16_t>{7}, 16000, "/tmp/a.wav");
    EXPECT_EQ(files.read("/tmp/a.wav"), wavBytes(std::vector<std::int16_t>{7}, 16000));
}

TEST(WavWriter, fullDisk_throwsAndLeavesNoFile) {
    FakeFileSystem files;
    files.setCapacity(40);
    EXPECT_THROW(writeWAV(files, {}, 16000, "/tmp/a.wav"), PlatformError);
    EXPECT_FALSE(files.exists("/tmp/a.wav"));
}

TEST(WavWriterDeathTest, sampleCountBeyondTheFormat_endsTheProgram) {
    // Only the count is looked at before the end.
    static const std::int16_t sample = 0;
    const std::span<const std::int16_t> tooMany(&sample, (0xFFFFFFFFULL - 36) / 2 + 1);
    EXPECT_DEATH(wavBytes(tooMany, 16000), "too long");
}

} // namespace
