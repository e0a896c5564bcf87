// SPDX-License-Identifier: MIT
#include "FakeAudioFileReader.h"
#include "FakeFileSystem.h"
#include "linux/audio/SndFileReader.h"
#include "linux/posix/PosixFileSystem.h"
#include "platform/system/PlatformError.h"
#include "speech/AudioChunker.h"
#include "speech/WavWriter.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <random>

#include <sys/stat.h>

using namespace talvera;
using namespace talvera::test;

namespace {

struct InMemory {
    FakeFileSystem files{{"/private"}};
    FakeAudioFileReader reader{files};
    QString directory = "/private";
};

struct OnDisk {
    PosixFileSystem files;
    SndFileReader reader;
    QTemporaryDir temporary;
    QString directory = temporary.path();
};

std::vector<std::int16_t> ramp(std::size_t count) {
    std::vector<std::int16_t> samples(count);
    for (std::size_t i = 0; i < count; ++i)
        samples[i] = static_cast<std::int16_t>(i * 97);
    return samples;
}

template <typename T>
class AudioFileReaderContract : public testing::Test {
protected:
    T system;
    FileSystem& files = system.files;
    AudioFileReader& reader = system.reader;
    QString path = system.directory + "/a.wav";

    void expectRefused() {
        try {
            reader.open(path);
            ADD_FAILURE() << "opened";
        } catch (const PlatformError& error) {
            EXPECT_EQ(error.domain(), "AudioFile");
            EXPECT_NE(error.code(), 0);
        }
    }
};

using Readers = testing::Types<InMemory, OnDisk>;
TYPED_TEST_SUITE(AudioFileReaderContract, Readers);

TYPED_TEST(AudioFileReaderContract, recordingOfOurs_isReadSampleBySample) {
    const auto samples = ramp(50000);
    writeWAV(this->files, samples, 16000, this->path);
    const auto file = this->reader.open(this->path);
    EXPECT_EQ(file->processingFormat(), (AudioFormat{16000.0, 1, SampleType::Int16}));
    EXPECT_EQ(file->length(), 50000);
    EXPECT_EQ(AudioChunker::readSamples(*file), samples);
    EXPECT_EQ(AudioChunker::readSamples(*file), samples); // and a second time
}

TYPED_TEST(AudioFileReaderContract, recordingWithoutSamples_isAnEmptySound) {
    writeWAV(this->files, {}, 16000, this->path);
    const auto file = this->reader.open(this->path);
    EXPECT_EQ(file->length(), 0);
    EXPECT_TRUE(AudioChunker::readSamples(*file).empty());
}

TYPED_TEST(AudioFileReaderContract, otherRate_isTold) {
    writeWAV(this->files, ramp(100), 48000, this->path);
    EXPECT_EQ(this->reader.open(this->path)->processingFormat().sampleRate, 48000.0);
}

TYPED_TEST(AudioFileReaderContract, recordingThatWasCutOff_hasWhatIsThere) {
    const auto samples = ramp(1000);
    this->files.write(this->path, wavBytes(samples, 16000).left(44 + 600));
    const auto file = this->reader.open(this->path);
    EXPECT_EQ(file->length(), 300);
    EXPECT_EQ(AudioChunker::readSamples(*file),
              (std::vector<std::int16_t>(samples.begin(), samples.begin() + 300)));
}

TYPED_TEST(AudioFileReaderContract, missingFile_isRefused) {
    this->expectRefused();
}

TYPED_TEST(AudioFileReaderContract, emptyFile_isRefused) {
    this->files.write(this->path, {});
    this->expectRefused();
}

TYPED_TEST(AudioFileReaderContract, halfAHeader_isRefused) {
    this->files.write(this->path, wavBytes(ramp(10), 16000).left(20));
    this->expectRefused();
}

TYPED_TEST(AudioFileReaderContract, fileThatIsNoSound_isRefused) {
    this->files.write(this->path, QByteArray(10000, 'x'));
    this->expectRefused();
}

TYPED_TEST(AudioFileReaderContract, directory_isRefused) {
    this->files.createDirectories(this->path);
    this->expectRefused();
}

class SndFileReaderTest : public testing::Test {
protected:
    /// Under a new name each time: some file systems wait for the disk when a file is overwritten.
    void write(const QByteArray& bytes) {
        if (files.exists(path))
            files.remove(path);
        files.write(path, bytes);
    }

    static QByteArray littleEndian(quint32 value, int bytes) {
        QByteArray result;
        for (int i = 0; i < bytes; ++i)
            result.append(static_cast<char>(value >> (8 * i)));
        return result;
    }

    /// A WAV file of any sample format.
    static QByteArray wav(int format, int channels, int bits, const QByteArray& data) {
        const auto frameBytes = static_cast<quint32>(channels * bits / 8);
        return "RIFF" + littleEndian(static_cast<quint32>(36 + data.size()), 4) + "WAVEfmt " +
               littleEndian(16, 4) + littleEndian(static_cast<quint32>(format), 2) +
               littleEndian(static_cast<quint32>(channels), 2) + littleEndian(16000, 4) +
               littleEndian(16000 * frameBytes, 4) + littleEndian(frameBytes, 2) +
               littleEndian(static_cast<quint32>(bits), 2) + "data" +
               littleEndian(static_cast<quint32>(data.size()), 4) + data;
    }

    QTemporaryDir temporary;
    PosixFileSystem files;
    SndFileReader reader;
    QString path = temporary.path() + "/a.wav";
};

TEST_F(SndFileReaderTest, floatFile_isReadAsFloats) {
    const float samples[] = {0.0F, 0.5F, -1.0F, 2.0F};
    write(wav(3, 1, 32, QByteArray(reinterpret_cast<const char*>(samples), sizeof samples)));
    const auto file = reader.open(path);
    EXPECT_EQ(file->processingFormat().sampleType, SampleType::Float32);
    EXPECT_EQ(AudioChunker::readSamples(*file), (std::vector<std::int16_t>{0, 16383, -32767, 32767}));
}

TEST_F(SndFileReaderTest, stereoFile_givesItsFirstChannel) {
    write(wav(1, 2, 16, QByteArray("\1\0\2\0\3\0\4\0", 8)));
    const auto file = reader.open(path);
    EXPECT_EQ(file->length(), 2);
    EXPECT_EQ(AudioChunker::readSamples(*file), (std::vector<std::int16_t>{1, 3}));
}

TEST_F(SndFileReaderTest, headerThatPromisesTooMuch_takesNoMemoryForIt) {
    auto bytes = wavBytes(ramp(10), 16000);
    bytes.replace(40, 4, "\xFF\xFF\xFF\x7F");
    write(bytes);
    try {
        const auto file = reader.open(path);
        EXPECT_LE(file->length(), 10);
        EXPECT_LE(AudioChunker::readSamples(*file).size(), 10U);
    } catch (const PlatformError&) {
    }
}

TEST_F(SndFileReaderTest, pipe_isRefusedAndNeverWaitedFor) {
    ASSERT_EQ(::mkfifo(path.toLocal8Bit().constData(), 0600), 0);
    EXPECT_THROW(reader.open(path), PlatformError);
}

TEST_F(SndFileReaderTest, damagedHeaders_endInSamplesOrInAnError) {
    std::mt19937 random(20240301);
    const auto whole = wavBytes(ramp(200), 16000);
    int opened = 0;
    int refused = 0;
    for (int round = 0; round < 3000; ++round) {
        auto bytes = whole.left(static_cast<qsizetype>(random() % static_cast<unsigned>(whole.size() + 1)));
        for (auto damage = random() % 5; damage > 0 && !bytes.isEmpty(); --damage)
            bytes[static_cast<qsizetype>(random() %
                                         static_cast<unsigned>(std::min<qsizetype>(bytes.size(), 44)))] =
                static_cast<char>(random());
        write(bytes);
        try {
            const auto file = reader.open(path);
            AudioChunker::readSamples(*file);
            AudioChunker::plan(file->length(), file->processingFormat().sampleRate, {25.0, 2.0, 28.0});
            ++opened;
        } catch (const PlatformError&) {
            ++refused;
        }
    }
    EXPECT_GT(opened, 100);
    EXPECT_GT(refused, 100);
}

} // namespace
