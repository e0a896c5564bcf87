// SPDX-License-Identifier: MIT
#pragma once

#include "platform/sound/AudioFile.h"

namespace talvera {

/// Reads sound files of the usual kinds: 16-bit files as they are, all others as floats.
class SndFileReader final : public AudioFileReader {
public:
    std::unique_ptr<AudioFile> open(const QString& path) override;
};

} // namespace talvera
