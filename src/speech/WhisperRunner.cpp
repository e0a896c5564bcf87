// SPDX-License-Identifier: MIT
#include "speech/WhisperRunner.h"

#include "platform/system/PlatformError.h"
#include "speech/TranscriptRules.h"
#include "speech/WhisperArguments.h"

#include <QStringDecoder>

namespace talvera {

namespace {

/// Fifteen hours of talk. A longer file is none that a sound tool writes of one recording.
constexpr qint64 longestOutputBytes = 1 << 20;

std::optional<QString> decodedUtf8(const QByteArray& bytes) {
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder(bytes);
    return decoder.hasError() ? std::nullopt : std::optional(text);
}

} // namespace

WhisperRunner::WhisperRunner(ChildProcess& processes, FileSystem& files, QString temporaryDirectory,
                             QString binaryPath, QString modelPath)
    : m_processes(processes)
    , m_files(files)
    , m_temporaryDirectory(std::move(temporaryDirectory))
    , m_binaryPath(std::move(binaryPath))
    , m_modelPath(std::move(modelPath)) {}

WhisperRunner WhisperRunner::makeDefault(ChildProcess& processes, FileSystem& files,
                                         const Directories& directories, const QString& modelPath) {
    return {processes, files, directories.temporary,
            directories.resources + QStringLiteral("/Resources/whisper-cli"), modelPath};
}

QString WhisperRunner::transcribe(const QString& wav, WhisperMode mode, const QString& language,
                                  const std::optional<QString>& prompt) const {
    if (!m_files.isExecutableFile(m_binaryPath))
        throw WhisperError::missingBinary();
    if (!m_files.exists(m_modelPath))
        throw WhisperError::missingModel();

    std::optional<double> duration;
    if (const auto bytes = m_files.size(wav))
        duration = wavDurationSeconds(*bytes);
    const auto result =
        m_processes.run({m_binaryPath, whisperArguments(wav, m_modelPath, duration, mode, language, prompt),
                         m_temporaryDirectory});
    if (result.status != 0) {
        throw WhisperError::processFailed(
            result.status, decodedUtf8(result.standardError).value_or(QStringLiteral("<non-utf8>")));
    }
    return postProcess(takeOutput(outputBase(wav) + QStringLiteral(".txt")));
}

/// The text that the tool left at `path`. The tool exits with 0 also when it could not read the sound; only
/// the file tells that it has worked.
QString WhisperRunner::takeOutput(const QString& path) const {
    std::optional<QString> text;
    try {
        if (m_files.size(path).value_or(0) <= longestOutputBytes)
            text = decodedUtf8(m_files.read(path));
    } catch (const PlatformError&) {
        throw WhisperError::outputUnreadable();
    }
    if (!text)
        throw WhisperError::outputUnreadable();
    try {
        m_files.remove(path);
    } catch (const PlatformError&) {
        // It lies in our private directory; the transcript matters more.
    }
    return *text;
}

} // namespace talvera
