// SPDX-License-Identifier: MIT
#include "speech/WavWriter.h"

#include "text/wiping.h"

#include <QtEndian>

#include <limits>

namespace talvera {

namespace {

constexpr quint16 pcm = 1;
constexpr quint16 channels = 1;
constexpr quint16 bytesPerSample = 2;

class LittleEndianWriter {
public:
    explicit LittleEndianWriter(QByteArray& bytes)
        : m_bytes(bytes) {}

    LittleEndianWriter& tag(const char* fourLetters) {
        m_bytes.append(fourLetters, 4);
        return *this;
    }

    template <typename Integer>
    LittleEndianWriter& integer(Integer value) {
        const auto little = qToLittleEndian(value);
        m_bytes.append(reinterpret_cast<const char*>(&little), sizeof little);
        return *this;
    }

private:
    QByteArray& m_bytes;
};

} // namespace

QByteArray wavBytes(std::span<const std::int16_t> samples, int sampleRate) {
    constexpr auto overhead =
        static_cast<quint32>(wavHeaderBytes) - 8; // what the first size counts besides data
    if (samples.size() > (std::numeric_limits<quint32>::max() - overhead) / bytesPerSample)
        qFatal("a recording is too long for a WAV file");
    const auto dataBytes = static_cast<quint32>(samples.size() * bytesPerSample);
    const auto rate = static_cast<quint32>(sampleRate);

    QByteArray bytes;
    bytes.reserve(wavHeaderBytes + static_cast<qsizetype>(dataBytes));
    LittleEndianWriter(bytes)
        .tag("RIFF")
        .integer(overhead + dataBytes)
        .tag("WAVE")
        .tag("fmt ")
        .integer(quint32{16}) // bytes of the format chunk
        .integer(pcm)
        .integer(channels)
        .integer(rate)
        .integer(rate * bytesPerSample)
        .integer(bytesPerSample)
        .integer(quint16{8 * bytesPerSample})
        .tag("data")
        .integer(dataBytes);
    bytes.resize(wavHeaderBytes + static_cast<qsizetype>(dataBytes));
    if (!samples.empty()) { // else its pointer may be null
        qToLittleEndian<qint16>(samples.data(), static_cast<qsizetype>(samples.size()),
                                bytes.data() + wavHeaderBytes);
    }
    return bytes;
}

void writeWAV(FileSystem& files, std::span<const std::int16_t> samples, int sampleRate, const QString& path) {
    auto bytes = wavBytes(samples, sampleRate);
    const WipedAtEnd wiped(bytes);
    files.write(path, bytes);
}

} // namespace talvera
