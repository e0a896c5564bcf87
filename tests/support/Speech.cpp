// SPDX-License-Identifier: MIT
#include "Speech.h"

#include "linux/audio/SndFileReader.h"
#include "linux/audio/SoxrAudioConverter.h"
#include "speech/AudioChunker.h"

#include <QProcess>
#include <QTemporaryDir>

#include <stdexcept>

namespace talvera::test {

std::vector<std::int16_t> spoken(const QString& text, const QString& voice, int wordsPerMinute) {
    const QTemporaryDir temporary;
    const auto path = temporary.filePath(QStringLiteral("speech.wav"));
    const QStringList arguments = {
        QStringLiteral("-v"), voice, QStringLiteral("-s"), QString::number(wordsPerMinute),
        QStringLiteral("-w"), path,  QStringLiteral("--"), text};
    if (QProcess::execute(QStringLiteral("espeak-ng"), arguments) != 0)
        throw std::runtime_error("espeak-ng failed");

    SndFileReader reader;
    const auto file = reader.open(path);
    const auto samples = AudioChunker::readSamples(*file);
    SoxrAudioConverterFactory factory;
    const AudioFormat format{file->processingFormat().sampleRate, 1, SampleType::Int16};
    const auto converter = factory.make(format, {16000.0, 1, SampleType::Int16});
    const auto result = converter->convert({format, samples.size(), samples.data()}, samples.size());
    if (!result)
        throw std::runtime_error("the speech could not be converted");
    return *result;
}

std::vector<std::int16_t> joined(const std::vector<std::vector<std::int16_t>>& parts, double secondsBetween) {
    std::vector<std::int16_t> result;
    for (const auto& part : parts) {
        if (!result.empty())
            result.insert(result.end(), static_cast<std::size_t>(secondsBetween * 16000), 0);
        result.insert(result.end(), part.begin(), part.end());
    }
    return result;
}

} // namespace talvera::test
