// SPDX-License-Identifier: MIT
// Once a recording is written, nothing of it is left in the program's memory.
#include "SimulatedMainActor.h"
#include "linux/audio/SndFileReader.h"
#include "linux/audio/SoxrAudioConverter.h"
#include "linux/posix/PosixFileSystem.h"
#include "linux/pulse/FrameAssembler.h"
#include "linux/support/FileDescriptor.h"
#include "speech/AudioChunker.h"
#include "speech/AudioRecorder.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <string>

#include <fcntl.h>

using namespace talvera;
using namespace talvera::test;

namespace {

constexpr std::size_t seconds = 30;

/// What is said: loud to the end, and nowhere the same.
std::int16_t said(std::size_t index) {
    const auto mixed = (static_cast<std::uint32_t>(index) + 77U) * 2654435761U;
    return static_cast<std::int16_t>((mixed >> 16U) | 0x400U);
}

/// A microphone whose sound is made as it is heard, so that it lies nowhere else.
class Speaker final : public AudioEngine {
public:
    AudioFormat inputFormat() override { return {16000.0, 1, SampleType::Int16}; }
    void installTap(std::size_t bufferFrames, const AudioFormat& format, Tap tap) override {
        m_frames.emplace(bufferFrames, format, std::move(tap));
    }
    void removeTap() override {
        if (m_frames)
            m_frames->flush();
        m_frames.reset();
    }
    void start() override {}
    void stop() override {}
    void setOnLost(std::function<void()>) override {}

    void speak() {
        for (std::size_t i = 0; i < seconds * 16000; ++i) {
            const auto sample = said(i);
            m_frames->append(&sample, sizeof sample);
        }
    }

private:
    std::optional<FrameAssembler> m_frames;
};

using Piece = std::array<std::int16_t, 32>;

/// The piece that is being looked for; found here it doesn't count.
Piece wanted;

/// Whether the piece stands in `block`, which was read from the address `begin`.
bool isIn(const std::vector<char>& block, std::uintptr_t begin) {
    const auto own = reinterpret_cast<std::uintptr_t>(&wanted);
    for (std::size_t from = 0; from < block.size();) {
        const auto* found = ::memmem(block.data() + from, block.size() - from, wanted.data(), sizeof wanted);
        if (found == nullptr)
            return false;
        const auto at = static_cast<std::size_t>(static_cast<const char*>(found) - block.data());
        if (begin + at != own)
            return true;
        from = at + 1;
    }
    return false;
}

/// How many of some pieces of what was said, of 2 ms each, stand somewhere in this process's memory.
int piecesInMemory() {
    constexpr std::array<std::size_t, 6> starts = {5, 4000, 70'001, 160'000, 300'017, seconds * 16000 - 40};
    constexpr std::uintptr_t largest = 256 << 20; // beyond that it is a sanitizer's book-keeping
    std::array<bool, starts.size()> found{};
    std::ifstream maps("/proc/self/maps");
    const FileDescriptor memory(::open("/proc/self/mem", O_RDONLY | O_CLOEXEC));
    std::vector<char> block;
    for (std::string line; std::getline(maps, line);) {
        unsigned long begin = 0;
        unsigned long end = 0;
        char rights[5] = {};
        if (std::sscanf(line.c_str(), "%lx-%lx %4s", &begin, &end, rights) != 3 || rights[1] != 'w' ||
            end - begin > largest)
            continue;
        block.resize(end - begin);
        const auto count = ::pread(memory.get(), block.data(), block.size(), static_cast<off_t>(begin));
        block.resize(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
        for (std::size_t piece = 0; piece < starts.size(); ++piece) {
            for (std::size_t i = 0; i < wanted.size(); ++i)
                wanted[i] = said(starts[piece] + i);
            found[piece] = found[piece] || isIn(block, begin);
            wanted = {};
        }
        std::fill(block.begin(), block.end(), '\0');
    }
    return static_cast<int>(std::count(found.begin(), found.end(), true));
}

class ForgottenRecording : public testing::Test {
protected:
    QTemporaryDir temporary;
    PosixFileSystem files;
    SimulatedMainActor actor;
    Speaker speaker;
    SoxrAudioConverterFactory converters;
    AudioRecorder recorder{speaker, converters, files, actor};
    QString wav = temporary.path() + "/a.wav";
};

TEST_F(ForgottenRecording, afterItsEnd_noPieceIsLeftInMemory) {
    recorder.start();
    speaker.speak();
    EXPECT_EQ(piecesInMemory(), 6) << "while it runs it has to be there";
    EXPECT_EQ(recorder.stop(wav), static_cast<double>(seconds));
    EXPECT_EQ(piecesInMemory(), 0);
}

TEST_F(ForgottenRecording, thatCantBeWritten_isKeptUntilTheNextBegins) {
    recorder.start();
    speaker.speak();
    EXPECT_THROW(recorder.stop(temporary.path() + "/none/a.wav"), PlatformError);
    EXPECT_EQ(piecesInMemory(), 6);
    recorder.start();
    EXPECT_EQ(piecesInMemory(), 0);
}

TEST_F(ForgottenRecording, cutIntoChunks_leavesNoPieceEither) {
    recorder.start();
    speaker.speak();
    recorder.stop(wav);
    SndFileReader reader;
    const auto chunks = AudioChunker::split(reader, files, wav, {25.0, 2.0, 28.0});
    ASSERT_TRUE(chunks);
    EXPECT_EQ(chunks->size(), 2U);
    EXPECT_EQ(piecesInMemory(), 0);
}

} // namespace
