// SPDX-License-Identifier: MIT
#include "Speech.h"

#include "linux/audio/SndFileReader.h"
#include "linux/audio/SoxrAudioConverter.h"
#include "speech/AudioChunker.h"

#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
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

QStringList sentencesOfFortySeconds() {
    return {QStringLiteral("Hello Anna, how are you?"),
            QStringLiteral("Please send the report tomorrow."),
            QStringLiteral("The meeting starts at nine on Monday."),
            QStringLiteral("We need milk and bread."),
            QStringLiteral("Can you check the invoice today?"),
            QStringLiteral("Peter is at home this evening."),
            QStringLiteral("Thank you for the long letter."),
            QStringLiteral("The contract is ready."),
            QStringLiteral("Where is the new document?"),
            QStringLiteral("Please call David this afternoon."),
            QStringLiteral("I will bring the list to Maria."),
            QStringLiteral("The weather is cold tonight."),
            QStringLiteral("See you tomorrow."),
            QStringLiteral("Write a short message to Julia.")};
}

std::vector<std::int16_t> fortySecondsOfSpeech() {
    std::vector<std::vector<std::int16_t>> parts;
    for (const auto& sentence : sentencesOfFortySeconds())
        parts.push_back(spoken(sentence));
    return joined(parts, 0.7);
}

qsizetype countedOnce(const QStringList& sentences, const QString& text) {
    return std::count_if(sentences.begin(), sentences.end(),
                         [&text](const QString& sentence) { return text.count(sentence) == 1; });
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
