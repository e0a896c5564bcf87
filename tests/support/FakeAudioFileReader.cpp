// SPDX-License-Identifier: MIT
#include "FakeAudioFileReader.h"

#include "platform/system/PlatformError.h"

#include <QtEndian>

#include <cstring>

namespace talvera::test {

namespace {

constexpr qsizetype headerBytes = 44;

class WavBytes final : public AudioFile {
public:
    explicit WavBytes(QByteArray bytes)
        : m_bytes(std::move(bytes)) {}

    AudioFormat processingFormat() const override {
        const auto channels = qFromLittleEndian<quint16>(m_bytes.constData() + 22);
        const auto rate = qFromLittleEndian<quint32>(m_bytes.constData() + 24);
        return {static_cast<double>(rate), channels, SampleType::Int16};
    }

    std::int64_t length() const override {
        return (m_bytes.size() - headerBytes) / (2 * processingFormat().channels);
    }

    std::vector<std::byte> readAll() override {
        std::vector<std::byte> samples(static_cast<std::size_t>(length() * 2 * processingFormat().channels));
        if (!samples.empty())
            std::memcpy(samples.data(), m_bytes.constData() + headerBytes, samples.size());
        return samples;
    }

private:
    QByteArray m_bytes;
};

} // namespace

std::unique_ptr<AudioFile> FakeAudioFileReader::open(const QString& path) {
    QByteArray bytes;
    try {
        bytes = m_files.read(path);
    } catch (const PlatformError& error) {
        throw PlatformError(QStringLiteral("AudioFile"), error.code(), error.message());
    }
    if (bytes.size() < headerBytes || !bytes.startsWith("RIFF") || bytes.mid(8, 8) != "WAVEfmt ")
        throw PlatformError(QStringLiteral("AudioFile"), 1, QStringLiteral("not a sound file"));
    return std::make_unique<WavBytes>(bytes);
}

} // namespace talvera::test
