// SPDX-License-Identifier: MIT
#include "speech/WhisperRunner.h"

#include "platform/system/PlatformError.h"
#include "speech/TranscriptRules.h"
#include "speech/WhisperArguments.h"
#include "text/wiping.h"

#include <QStringDecoder>

#include <algorithm>
#include <iterator>

namespace talvera {

namespace {

/// Fifteen hours of talk. A longer file is none that a sound tool writes of one recording.
constexpr qint64 longestOutputBytes = 1 << 20;

std::optional<QString> decodedUtf8(const QByteArray& bytes) {
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder(bytes);
    return decoder.hasError() ? std::nullopt : std::optional(text);
}

QByteArray withoutBlanks(const QByteArray& text) {
    QByteArray rest;
    rest.reserve(text.size());
    std::copy_if(text.begin(), text.end(), std::back_inserter(rest),
                 [](char byte) { return static_cast<unsigned char>(byte) > ' '; });
    return rest;
}

/// On a full disk the file ends early, or is empty, and the tool doesn't notice: it has printed the same
/// text, and goes on where the file ends. Where both say the same, or different things, the file is as it
/// should be.
bool wasCut(const QByteArray& written, const QByteArray& printed) {
    auto inFile = withoutBlanks(written);
    const WipedAtEnd wipedFile(inFile);
    auto onStream = withoutBlanks(printed);
    const WipedAtEnd wipedStream(onStream);
    return inFile.size() < onStream.size() && onStream.startsWith(inFile);
}

bool agree(const QByteArray& written, const QByteArray& printed) {
    auto inFile = withoutBlanks(written);
    const WipedAtEnd wipedFile(inFile);
    auto onStream = withoutBlanks(printed);
    const WipedAtEnd wipedStream(onStream);
    return inFile == onStream || wasCut(written, printed);
}

} // namespace

WhisperRunner::WhisperRunner(ChildProcess& processes, FileSystem& files, QString temporaryDirectory,
                             QString binaryURL, QString modelURL)
    : m_processes(processes)
    , m_files(files)
    , m_temporaryDirectory(std::move(temporaryDirectory))
    , m_binaryURL(std::move(binaryURL))
    , m_modelURL(std::move(modelURL)) {}

WhisperRunner WhisperRunner::makeDefault(ChildProcess& processes, FileSystem& files,
                                         const Directories& directories, const QString& modelURL) {
    return {processes, files, directories.temporary,
            directories.resources + QStringLiteral("/Resources/whisper-cli"), modelURL};
}

WhisperRunner WhisperRunner::atLowPriority() const {
    auto runner = *this;
    runner.m_priority = ChildProcessRequest::Priority::Low;
    return runner;
}

QString WhisperRunner::transcribe(const QString& wav, WhisperMode mode, const QString& language,
                                  const std::optional<QString>& prompt) const {
    if (!m_files.isExecutableFile(m_binaryURL))
        throw WhisperError::missingBinary();
    if (!m_files.exists(m_modelURL))
        throw WhisperError::missingModel();

    const auto path = outputBase(wav) + QStringLiteral(".txt");
    const bool isThere = m_files.exists(path); // of an earlier pass, since it could not be deleted
    std::optional<double> duration;
    if (const auto bytes = m_files.size(wav))
        duration = wavDurationSeconds(*bytes);
    auto result =
        m_processes.run({m_binaryURL, whisperArguments(wav, m_modelURL, duration, mode, language, prompt),
                         m_temporaryDirectory, QStringLiteral("--prompt"), m_priority});
    const WipedAtEnd wipedOutput(result.standardOutput);
    if (result.status != 0) {
        throw WhisperError::processFailed(
            result.status, decodedUtf8(result.standardError).value_or(QStringLiteral("<non-utf8>")));
    }
    auto written = takeOutput(path);
    const WipedAtEnd wipedFile(written);
    if (isThere && !agree(written, result.standardOutput))
        throw WhisperError::outputUnreadable(); // this pass may have left none
    auto text = decodedUtf8(wasCut(written, result.standardOutput) ? result.standardOutput : written);
    if (!text)
        throw WhisperError::outputUnreadable();
    const WipedAtEnd wipedText(*text);
    removeIfPossible(m_files, path); // in our private directory; the transcript matters more
    return postProcess(*text);
}

/// What the tool left at `path`. It exits with 0 also when it could not read the sound; only the file tells
/// that it has worked.
QByteArray WhisperRunner::takeOutput(const QString& path) const {
    try {
        if (m_files.size(path).value_or(0) <= longestOutputBytes)
            return m_files.read(path);
    } catch (const PlatformError&) {
        // As if it were too long.
    }
    throw WhisperError::outputUnreadable();
}

} // namespace talvera
