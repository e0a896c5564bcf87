// SPDX-License-Identifier: MIT
#include "linux/audio/SndFileReader.h"

#include "linux/support/FileDescriptor.h"
#include "platform/system/PlatformError.h"

#include <QFile>

#include <cerrno>

#include <fcntl.h>
#include <sndfile.h>
#include <sys/stat.h>

namespace talvera {

namespace {

[[noreturn]] void fail(int code, const QString& path, const QString& reason) {
    throw PlatformError(QStringLiteral("AudioFile"), code, QStringLiteral("%1: %2").arg(path, reason));
}

struct SoundDeleter {
    void operator()(SNDFILE* sound) const { sf_close(sound); }
};
using Sound = std::unique_ptr<SNDFILE, SoundDeleter>;

class SndFile final : public AudioFile {
public:
    SndFile(QString path, FileDescriptor file, Sound sound, const SF_INFO& info)
        : m_path(std::move(path))
        , m_file(std::move(file))
        , m_sound(std::move(sound))
        , m_info(info) {}

    AudioFormat processingFormat() const override {
        const bool is16Bit = (m_info.format & SF_FORMAT_SUBMASK) == SF_FORMAT_PCM_16;
        return {static_cast<double>(m_info.samplerate), m_info.channels,
                is16Bit ? SampleType::Int16 : SampleType::Float32};
    }

    std::int64_t length() const override { return m_info.frames; }

    std::vector<std::byte> readAll() override {
        return processingFormat().sampleType == SampleType::Int16 ? readAs<short>(sf_readf_short)
                                                                  : readAs<float>(sf_readf_float);
    }

private:
    template <typename Sample>
    std::vector<std::byte> readAs(sf_count_t (*readFrames)(SNDFILE*, Sample*, sf_count_t)) {
        const auto frameBytes = sizeof(Sample) * static_cast<std::size_t>(m_info.channels);
        std::vector<std::byte> bytes(static_cast<std::size_t>(m_info.frames) * frameBytes);
        sf_seek(m_sound.get(), 0, SEEK_SET);
        const auto frames = readFrames(m_sound.get(), reinterpret_cast<Sample*>(bytes.data()), m_info.frames);
        if (sf_error(m_sound.get()) != SF_ERR_NO_ERROR)
            fail(sf_error(m_sound.get()), m_path, QString::fromUtf8(sf_strerror(m_sound.get())));
        bytes.resize(static_cast<std::size_t>(frames) * frameBytes);
        return bytes;
    }

    QString m_path;
    FileDescriptor m_file;
    Sound m_sound;
    SF_INFO m_info;
};

} // namespace

std::unique_ptr<AudioFile> SndFileReader::open(const QString& path) {
    // Opened here, since the library would wait for the other end of a pipe.
    FileDescriptor file(
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    struct stat status {};
    if (!file.isOpen() || ::fstat(file.get(), &status) != 0)
        fail(errno, path, qt_error_string(errno));
    if (!S_ISREG(status.st_mode))
        fail(EINVAL, path, QStringLiteral("not a file"));

    SF_INFO info{};
    Sound sound(sf_open_fd(file.get(), SFM_READ, &info, SF_FALSE));
    if (!sound)
        fail(sf_error(nullptr), path, QString::fromUtf8(sf_strerror(nullptr)));
    // The header may promise more than the file can hold; no sound takes less than a bit.
    if (info.frames < 0 || info.frames / 8 > status.st_size || info.channels < 1 || info.samplerate < 1)
        fail(SF_ERR_MALFORMED_FILE, path, QStringLiteral("impossible header"));
    return std::make_unique<SndFile>(path, std::move(file), std::move(sound), info);
}

} // namespace talvera
