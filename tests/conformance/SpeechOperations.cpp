// SPDX-License-Identifier: MIT
#include "linux/audio/SndFileReader.h"
#include "linux/posix/PosixChildProcess.h"
#include "linux/posix/PosixFileSystem.h"
#include "operations.h"
#include "platform/system/PlatformError.h"
#include "speech/AudioChunker.h"
#include "speech/OverlapMerge.h"
#include "speech/SoundMeasures.h"
#include "speech/TranscriptRules.h"
#include "speech/WavWriter.h"
#include "speech/WhisperArguments.h"
#include "speech/WhisperRunner.h"

#include <QTemporaryDir>

namespace talvera::conformance {

namespace {

// What goes beyond these asks for nothing but our memory.
constexpr std::size_t mostSamples = 1ULL << 28;
constexpr double mostChunks = 1e5;

double sampleRateOf(const Request& request) {
    const auto rate = request.number("sampleRate");
    if (!(rate >= 1 && rate <= 1e6))
        throw BadRequest("\"sampleRate\" must be from 1 to 1000000");
    return rate;
}

Answer orNull(const std::optional<QString>& text) {
    return text ? Answer(text->toStdString()) : Answer(nullptr);
}

Answer texts(const QStringList& list) {
    auto result = Answer::array();
    for (const auto& text : list)
        result.push_back(text.toStdString());
    return result;
}

Operation ruleOn(QString (*rule)(const QString&)) {
    return [rule](const Request& request) -> Answer {
        return {{"text", rule(request.text("text")).toStdString()}};
    };
}

Answer overlap(const Request& request) {
    return {{"text", mergeOverlap(request.text("a"), request.text("b")).toStdString()}};
}

Answer all(const Request& request) {
    return {{"text", mergeAll(request.texts("texts")).toStdString()}};
}

Answer tail(const Request& request) {
    return {{"text", orNull(tailPrompt(request.text("text")))}};
}

WhisperMode modeOf(const Request& request) {
    const auto name = request.text("mode");
    if (name == u"transcribe")
        return WhisperMode::Transcribe;
    if (name == u"translateToEnglish")
        return WhisperMode::TranslateToEnglish;
    throw BadRequest("unknown value of \"mode\"");
}

Answer argumentsOf(const Request& request) {
    const auto bytes = request.optionalInteger<qint64>("wavBytes");
    const auto duration = bytes ? std::optional(wavDurationSeconds(*bytes)) : std::nullopt;
    return {{"arguments",
             texts(whisperArguments(request.text("wav"), request.text("model"), duration, modeOf(request),
                                    request.text("language"), request.optionalText("prompt")))}};
}

Answer failureOf(const WhisperError& error) {
    switch (error.kind()) {
    case WhisperError::Kind::ProcessFailed:
        return {
            {"failure", "processFailed"}, {"status", error.status()}, {"stderr", error.text().toStdString()}};
    case WhisperError::Kind::MissingBinary:
        return {{"failure", "missingBinary"}};
    case WhisperError::Kind::MissingModel:
        return {{"failure", "missingModel"}};
    case WhisperError::Kind::OutputUnreadable:
        break;
    }
    return {{"failure", "outputUnreadable"}};
}

Answer run(const Request& request) {
    const QTemporaryDir temporary;
    PosixChildProcess processes;
    PosixFileSystem files;
    const WhisperRunner runner(processes, files, temporary.path(), request.text("binary"),
                               request.text("model"));
    try {
        const auto text = runner.transcribe(request.text("wav"), modeOf(request), request.text("language"),
                                            request.optionalText("prompt"));
        return {{"text", text.toStdString()}};
    } catch (const WhisperError& error) {
        return failureOf(error);
    } catch (const PlatformError&) {
        return {{"failure", "launchFailed"}};
    }
}

std::vector<std::int16_t> samplesFromRuns(const nlohmann::json& runs) {
    std::vector<std::int16_t> samples;
    for (const auto& entry : runs) {
        if (!entry.is_array() || entry.size() != 2)
            throw BadRequest("\"runs\" must hold pairs of a value and a count");
        const auto count = Request::integerFrom<std::size_t>(entry[1], "runs");
        if (count > mostSamples - samples.size())
            throw BadRequest("\"runs\" holds too many samples");
        samples.insert(samples.end(), count, Request::integerFrom<std::int16_t>(entry[0], "runs"));
    }
    return samples;
}

Answer trim(const Request& request) {
    const auto samples = samplesFromRuns(request.array("runs"));
    return {{"count", trimTrailingSilence(samples, sampleRateOf(request)).size()}};
}

template <typename Sample>
Answer levelOf(const std::vector<Sample>& samples, SampleType type) {
    const auto level = inputLevel({{16000.0, 1, type}, samples.size(), samples.data()});
    return {{"level", level ? Answer(*level) : Answer(nullptr)}};
}

std::vector<std::int16_t> integers(const nlohmann::json& values, const char* name) {
    std::vector<std::int16_t> result;
    for (const auto& value : values)
        result.push_back(Request::integerFrom<std::int16_t>(value, name));
    return result;
}

Answer level(const Request& request) {
    const auto format = request.text("format");
    if (format == u"int16")
        return levelOf(integers(request.array("channel0"), "channel0"), SampleType::Int16);
    if (format != u"float")
        throw BadRequest("unknown value of \"format\"");
    std::vector<float> samples;
    for (const auto value : request.numbers("channel0"))
        samples.push_back(static_cast<float>(value));
    return levelOf(samples, SampleType::Float32);
}

Answer wholeWav(const Request& request) {
    const auto samples = integers(request.array("samples"), "samples");
    return {{"hex", wavBytes(samples, request.integer<int>("sampleRate")).toHex().toStdString()}};
}

AudioChunker::Lengths lengthsOf(const Request& request) {
    return {request.number("chunkSeconds"), request.number("overlapSeconds"), request.number("minDuration")};
}

Answer plan(const Request& request) {
    const auto frames = request.integer<std::int64_t>("frames");
    const auto rate = sampleRateOf(request);
    const auto lengths = lengthsOf(request);
    const auto step = std::max((lengths.chunkSeconds - lengths.overlapSeconds) * rate, 1.0);
    if (static_cast<double>(frames) / step > mostChunks)
        throw BadRequest("too many chunks");
    const auto cuts = AudioChunker::plan(frames, rate, lengths);
    if (!cuts)
        return {{"chunks", nullptr}};
    auto chunks = Answer::array();
    for (const auto& cut : *cuts) {
        chunks.push_back({{"first", cut.first},
                          {"count", cut.count},
                          {"startSeconds", cut.startSeconds},
                          {"durationSeconds", cut.durationSeconds}});
    }
    return {{"chunks", chunks}};
}

Answer split(const Request& request) {
    SndFileReader reader;
    PosixFileSystem files;
    std::optional<std::vector<AudioChunker::Chunk>> pieces;
    try {
        pieces = AudioChunker::split(reader, files, request.text("wav"), lengthsOf(request));
    } catch (const PlatformError& error) {
        return {{"failure",
                 {{"domain", error.domain().toStdString()},
                  {"code", error.code()},
                  {"message", error.message().toStdString()}}}};
    }
    if (!pieces)
        return {{"chunks", nullptr}};
    auto chunks = Answer::array();
    for (const auto& piece : *pieces) {
        chunks.push_back({{"path", piece.url.toStdString()},
                          {"startSeconds", piece.startSeconds},
                          {"durationSeconds", piece.durationSeconds}});
    }
    return {{"chunks", chunks}};
}

} // namespace

void addSpeechOperations(Driver& driver) {
    driver.add("postProcess", ruleOn(postProcess));
    driver.add("normalize", ruleOn(normalize));
    driver.add("fixQuestionMark", ruleOn(fixQuestionMark));
    driver.add("mergeOverlap", overlap);
    driver.add("mergeAll", all);
    driver.add("tailPrompt", tail);
    driver.add("whisperArguments", argumentsOf);
    driver.add("runWhisper", run);
    driver.add("trimTrailingSilence", trim);
    driver.add("inputLevel", level);
    driver.add("wavBytes", wholeWav);
    driver.add("chunkPlan", plan);
    driver.add("split", split);
}

} // namespace talvera::conformance
