// SPDX-License-Identifier: MIT
#include "speech/AudioChunker.h"

#include "platform/system/PlatformError.h"
#include "speech/WavWriter.h"
#include "speech/WhisperArguments.h"
#include "text/wiping.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <new>

namespace talvera {

namespace {

constexpr int allocationFailed = 1;
constexpr int unsupportedFormat = 2;

PlatformError chunkerError(int code, const QString& message) {
    return {QStringLiteral("AudioChunker"), code, message};
}

/// Whole frames in `seconds`, never beyond what a recording can have.
std::int64_t wholeFrames(double seconds, double sampleRate) {
    constexpr double most = 1LL << 52;
    const auto frames = seconds * sampleRate;
    return frames > 0 ? static_cast<std::int64_t>(std::min(frames, most)) : 0;
}

bool isLong(std::int64_t frames, double sampleRate, const AudioChunker::Lengths& lengths) {
    return lengths.minDuration < static_cast<double>(frames) / sampleRate;
}

std::int16_t toInt16(float sample) {
    if (std::isnan(sample))
        return 0;
    return static_cast<std::int16_t>(std::clamp(sample, -1.0F, 1.0F) * 32767.0F);
}

template <typename Sample, typename Convert>
std::vector<std::int16_t> firstChannel(const std::vector<std::byte>& bytes, int channels, Convert convert) {
    const auto frameBytes = sizeof(Sample) * static_cast<std::size_t>(channels);
    std::vector<std::int16_t> samples(bytes.size() / frameBytes);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        Sample sample;
        std::memcpy(&sample, bytes.data() + i * frameBytes, sizeof sample);
        samples[i] = convert(sample);
    }
    return samples;
}

} // namespace

const AudioChunker::Lengths AudioChunker::usualLengths{25.0, 2.0, 28.0};

std::vector<AudioChunker::Cut> AudioChunker::cuts(std::int64_t frames, double sampleRate,
                                                  const Lengths& lengths) {
    const auto chunkFrames = wholeFrames(lengths.chunkSeconds, sampleRate);
    const auto overlapFrames = wholeFrames(lengths.overlapSeconds, sampleRate);
    const auto step = std::max<std::int64_t>(chunkFrames - overlapFrames, 1);

    std::vector<Cut> result;
    for (std::int64_t position = 0; position < frames; position += step) {
        const auto end = std::min(position + chunkFrames, frames);
        result.push_back({position, end - position, static_cast<double>(position) / sampleRate,
                          static_cast<double>(end - position) / sampleRate});
        if (end == frames)
            break;
    }
    return result;
}

std::optional<std::vector<AudioChunker::Cut>> AudioChunker::plan(std::int64_t frames, double sampleRate,
                                                                 const Lengths& lengths) {
    if (!isLong(frames, sampleRate, lengths))
        return std::nullopt;
    return cuts(frames, sampleRate, lengths);
}

std::optional<std::vector<AudioChunker::Chunk>>
AudioChunker::split(AudioFileReader& reader, FileSystem& files, const QString& wav, const Lengths& lengths) {
    const auto file = reader.open(wav);
    const auto sampleRate = file->processingFormat().sampleRate;
    if (!isLong(file->length(), sampleRate, lengths))
        return std::nullopt;

    auto samples = readSamples(*file);
    const WipedAtEnd wiped(samples);
    std::vector<Chunk> chunks;
    for (const auto& cut : cuts(static_cast<std::int64_t>(samples.size()), sampleRate, lengths)) {
        const auto path = pathOf(wav, chunks.size());
        const std::span piece(samples.data() + cut.first, static_cast<std::size_t>(cut.count));
        writeWAV(files, piece, static_cast<int>(sampleRate), path);
        chunks.push_back({path, cut.startSeconds, cut.durationSeconds});
    }
    return chunks;
}

QString AudioChunker::pathOf(const QString& wav, std::size_t index) {
    return QStringLiteral("%1-chunk%2.wav").arg(outputBase(wav), QString::number(index));
}

void AudioChunker::cleanup(FileSystem& files, const std::vector<Chunk>& chunks) {
    for (const auto& chunk : chunks)
        removeIfPossible(files, chunk.url);
}

std::vector<std::int16_t> AudioChunker::readSamples(AudioFile& file) {
    std::vector<std::byte> bytes;
    const WipedAtEnd wiped(bytes);
    try {
        bytes = file.readAll();
    } catch (const std::bad_alloc&) {
        throw chunkerError(allocationFailed, QStringLiteral("Could not allocate PCM buffer"));
    }
    const auto format = file.processingFormat();
    if (format.channels < 1)
        throw chunkerError(unsupportedFormat, QStringLiteral("Unsupported sample format"));
    switch (format.sampleType) {
    case SampleType::Int16:
        return firstChannel<std::int16_t>(bytes, format.channels, [](std::int16_t sample) { return sample; });
    case SampleType::Float32:
        return firstChannel<float>(bytes, format.channels, toInt16);
    }
    throw chunkerError(unsupportedFormat, QStringLiteral("Unsupported sample format"));
}

} // namespace talvera
