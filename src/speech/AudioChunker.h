// SPDX-License-Identifier: MIT
#pragma once

#include "platform/sound/AudioFile.h"
#include "platform/system/FileSystem.h"

#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

namespace talvera {

/// Cuts a long recording into overlapping pieces of fixed length. Nothing looks for silence: the cuts stand
/// at fixed positions.
class AudioChunker {
public:
    /// All in seconds.
    struct Lengths {
        double chunkSeconds;
        double overlapSeconds; ///< what neighbouring chunks share
        double minDuration;    ///< a recording is long when it is longer than this
    };

    /// Those of every dictation.
    static const Lengths usualLengths;

    /// A piece of a recording, in frames and in seconds.
    struct Cut {
        std::int64_t first;
        std::int64_t count;
        double startSeconds; ///< of its first frame in the recording
        double durationSeconds;
    };

    /// A piece in a WAV file of its own.
    struct Chunk {
        QString url; ///< the file's path
        double startSeconds;
        double durationSeconds;
    };

    AudioChunker() = delete;

    /// Where a recording is cut; nothing when it is not long.
    static std::optional<std::vector<Cut>> plan(std::int64_t frames, double sampleRate,
                                                const Lengths& lengths);

    /// Writes the pieces of a long recording beside it. Nothing when it is not long, and no file is written
    /// then. Throws PlatformError; pieces that are already written stay.
    static std::optional<std::vector<Chunk>> split(AudioFileReader& reader, FileSystem& files,
                                                   const QString& wav, const Lengths& lengths);

    /// Deletes the pieces, as far as it can.
    static void cleanup(FileSystem& files, const std::vector<Chunk>& chunks);

    /// The first channel as 16-bit samples. Throws PlatformError.
    static std::vector<std::int16_t> readSamples(AudioFile& file);

    /// Where the piece of this number lies that is written for the recording `wav`.
    static QString pathOf(const QString& wav, std::size_t index);

private:
    static std::vector<Cut> cuts(std::int64_t frames, double sampleRate, const Lengths& lengths);
};

} // namespace talvera
