// SPDX-License-Identifier: MIT
#pragma once

#include "platform/sound/AudioBuffer.h"

#include <QString>

#include <memory>
#include <vector>

namespace talvera {

/// A sound file that is open for reading.
class AudioFile {
public:
    virtual ~AudioFile() = default;

    /// The format that read() gives.
    virtual AudioFormat processingFormat() const = 0;

    /// Frames in the file.
    virtual std::int64_t length() const = 0;

    /// Reads the whole file as interleaved samples of the processing format, in bytes. Throws PlatformError.
    virtual std::vector<std::byte> readAll() = 0;
};

/// Opens sound files.
class AudioFileReader {
public:
    virtual ~AudioFileReader() = default;

    /// Throws PlatformError (domain "AudioFile") when the file is missing or is no sound file.
    virtual std::unique_ptr<AudioFile> open(const QString& path) = 0;
};

} // namespace talvera
