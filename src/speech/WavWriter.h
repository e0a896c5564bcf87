// SPDX-License-Identifier: MIT
#pragma once

#include "platform/system/FileSystem.h"

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <span>

namespace talvera {

/// What stands before the samples in every file that we write.
constexpr qsizetype wavHeaderBytes = 44;

/// A whole WAV file of 16-bit mono sound: a header, then the samples. `sampleRate` is in samples
/// per second. More samples than the format's 32-bit sizes can tell end the program.
QByteArray wavBytes(std::span<const std::int16_t> samples, int sampleRate);

/// Writes that file, replacing what stands at `path`. Throws PlatformError.
void writeWAV(FileSystem& files, std::span<const std::int16_t> samples, int sampleRate, const QString& path);

} // namespace talvera
