// SPDX-License-Identifier: MIT
#include "Mutator.h"
#include "linux/audio/SndFileReader.h"
#include "linux/posix/PosixFileSystem.h"
#include "platform/system/PlatformError.h"
#include "speech/AudioChunker.h"
#include "speech/WavWriter.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace talvera;

namespace {

QByteArray number(std::uint32_t value) {
    return {reinterpret_cast<const char*>(&value), sizeof value};
}

const QByteArrayList tokens{"RIFF",
                            "RIFX",
                            "RF64",
                            "WAVE",
                            "fmt ",
                            "data",
                            "LIST",
                            "FORM",
                            "AIFF",
                            "fLaC",
                            "OggS",
                            "caff",
                            ".snd",
                            number(0),
                            number(1),
                            number(16),
                            number(0x7FFFFFFF),
                            number(0xFFFFFFFF),
                            number(0x80000000),
                            number(0xFFFE),
                            number(65535),
                            QByteArray(64, '\0')};

/// Half a second: long for the lengths below.
QByteArray goodFile() {
    std::vector<std::int16_t> samples(8000);
    for (size_t i = 0; i < samples.size(); ++i)
        samples[i] = static_cast<std::int16_t>(i * 37);
    return wavBytes(samples, 16000);
}

/// Cutting any file ends in pieces that are there, in nothing, or in an error; and afterwards nothing but the
/// file is left.
TEST(SoundFileFuzz, spoiledFile_isCutOrRefusedAndLeavesNothingBehind) {
    const QTemporaryDir directory;
    const auto path = directory.filePath(QStringLiteral("speech.wav"));
    PosixFileSystem files;
    SndFileReader reader;
    const auto good = goodFile();
    int cut = 0;
    int refused = 0;
    for (std::uint32_t seed = 1; seed <= 4000; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        test::Mutator mutator(seed);
        // Most of what can go wrong goes wrong in the header.
        const auto header = mutator.mutated(good.left(44), tokens);
        if (files.exists(path))
            files.remove(path); // overwriting would wait for the disk
        files.write(path, seed % 20 == 0 ? mutator.noise(mutator.below(20'000)) : header + good.mid(44));
        try {
            if (const auto chunks = AudioChunker::split(reader, files, path, {0.2, 0.05, 0.3})) {
                ++cut;
                for (const auto& chunk : *chunks)
                    ASSERT_GT(files.size(chunk.url).value_or(0), 44);
                AudioChunker::cleanup(files, *chunks);
                ASSERT_EQ(QDir(directory.path()).entryList(QDir::Files),
                          QStringList{QStringLiteral("speech.wav")});
            }
        } catch (const PlatformError&) {
            ++refused;
        }
    }
    EXPECT_GT(cut, 100);
    EXPECT_GT(refused, 100);
}

} // namespace
