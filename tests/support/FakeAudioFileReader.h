// SPDX-License-Identifier: MIT
#pragma once

#include "platform/sound/AudioFile.h"
#include "platform/system/FileSystem.h"

namespace talvera::test {

/// Reads WAV files with a header of 44 bytes out of any file system.
class FakeAudioFileReader final : public AudioFileReader {
public:
    explicit FakeAudioFileReader(FileSystem& files)
        : m_files(files) {}

    std::unique_ptr<AudioFile> open(const QString& path) override;

private:
    FileSystem& m_files;
};

} // namespace talvera::test
