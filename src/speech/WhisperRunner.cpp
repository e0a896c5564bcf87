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

/// The tool holds the whole model in memory, and works in less than as much again.
constexpr qint64 memoryPerModelByte = 2;

QString textFileOf(const QString& wav) {
    return outputBase(wav) + QStringLiteral(".txt");
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
    return transcribe(wav, mode, language, prompt, nullptr);
}

QString WhisperRunner::transcribe(const QString& wav, WhisperMode mode, const QString& language,
                                  const std::optional<QString>& prompt, PreparedRun* prepared) const {
    if (!m_files.isExecutableFile(m_binaryURL))
        throw WhisperError::missingBinary();
    if (!m_files.exists(m_modelURL))
        throw WhisperError::missingModel();

    const auto path = textFileOf(wav);
    const bool isThere = m_files.exists(path); // of an earlier pass, since it could not be deleted
    std::optional<double> seconds;
    if (const auto bytes = m_files.size(wav))
        seconds = wavDurationSeconds(*bytes);
    const auto wanted = request(wav, seconds, mode, language, prompt);
    auto result = prepared != nullptr ? finish(*prepared, wanted, wav) : std::nullopt;
    if (!result)
        result = m_processes.run(wanted);
    return textOf(std::move(*result), path, isThere);
}

std::optional<QString> WhisperRunner::transcribeAhead(const QByteArray& recording, const QString& wav,
                                                      WhisperMode mode, const QString& language,
                                                      const std::optional<QString>& prompt,
                                                      PreparedRun& prepared) const {
    const auto path = textFileOf(wav);
    const bool isThere = m_files.exists(path);
    const auto wanted = request(wav, wavDurationSeconds(recording.size()), mode, language, prompt);
    if (!prepared.isFor(wanted, filesNow()))
        return std::nullopt;
    auto result = prepared.finish(recording);
    return result ? std::optional(textOf(std::move(*result), path, isThere)) : std::nullopt;
}

std::unique_ptr<PreparedRun> WhisperRunner::prepare(const QString& wav, double seconds, WhisperMode mode,
                                                    const QString& language,
                                                    const std::optional<QString>& prompt) const {
    const auto files = filesNow();
    if (!files.model || !m_files.isExecutableFile(m_binaryURL))
        return nullptr;
    auto wanted = request(wav, seconds, mode, language, prompt);
    auto child = m_processes.prepare(wanted);
    return child ? std::make_unique<PreparedRun>(std::move(wanted), files, std::move(child)) : nullptr;
}

RunFiles WhisperRunner::filesNow() const {
    return {m_files.stamp(m_modelURL), m_files.stamp(m_temporaryDirectory)};
}

ChildProcessRequest WhisperRunner::request(const QString& wav, std::optional<double> seconds,
                                           WhisperMode mode, const QString& language,
                                           const std::optional<QString>& prompt) const {
    ChildProcessRequest request{m_binaryURL,
                                whisperArguments(wav, m_modelURL, seconds, mode, language, prompt),
                                m_temporaryDirectory, QStringLiteral("--prompt"), m_priority};
    request.memory = memoryPerModelByte * m_files.size(m_modelURL).value_or(0);
    return request;
}

/// Nothing when the run is another one, or has come to nothing.
std::optional<ChildProcessResult>
WhisperRunner::finish(PreparedRun& prepared, const ChildProcessRequest& request, const QString& wav) const {
    if (!prepared.isFor(request, filesNow())) {
        prepared.end();
        return std::nullopt;
    }
    QByteArray recording;
    const WipedAtEnd wiped(recording);
    try {
        recording = m_files.read(wav);
    } catch (const PlatformError&) {
        prepared.end(); // the tool itself will say what is wrong with the recording
        return std::nullopt;
    }
    return prepared.finish(recording);
}

/// The transcript that a run has left at `path`; before it, something may have been there already.
QString WhisperRunner::textOf(ChildProcessResult result, const QString& path, bool wasThere) const {
    const WipedAtEnd wipedOutput(result.standardOutput);
    if (result.status != 0) {
        throw WhisperError::processFailed(
            result.status, decodedUtf8(result.standardError).value_or(QStringLiteral("<non-utf8>")));
    }
    auto written = takeOutput(path);
    const WipedAtEnd wipedFile(written);
    if (wasThere && !agree(written, result.standardOutput))
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
