// SPDX-License-Identifier: MIT
// speech_costs: what our own part of a dictation costs beside the recogniser.
#include "FakeAudioEngine.h"
#include "SimulatedMainActor.h"
#include "linux/audio/SoxrAudioConverter.h"
#include "linux/posix/PosixChildProcess.h"
#include "linux/posix/PosixFileSystem.h"
#include "linux/xdg/XdgDirectories.h"
#include "speech/AudioRecorder.h"
#include "speech/OverlapMerge.h"
#include "speech/TranscriptRules.h"
#include "support/Figure.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <string>
#include <vector>

using namespace talvera;
using namespace talvera::bench;
using namespace talvera::test;

namespace {

/// Does the work so often and prints what one time takes.
void measure(const std::string& what, int runs, const std::function<void()>& work) {
    Figure figure(what);
    for (int run = 0; run < runs; ++run) {
        const auto start = Clock::now();
        work();
        figure.add(milliseconds(Clock::now() - start));
    }
    figure.print();
}

std::string wholeNumber(double value) {
    return std::to_string(static_cast<int>(value));
}

/// What the recogniser says of each of the chunks of an hour: two and a half words a second, the five of the
/// overlap twice.
QStringList hourOfChunks() {
    QStringList chunks;
    int word = 0;
    for (int chunk = 0; chunk < 157; ++chunk) {
        QString text;
        for (int i = 0; i < 62; ++i, ++word)
            text += QStringLiteral(" word%1%2").arg(word).arg(i % 9 == 8 ? QStringLiteral(" ,") : QString());
        word -= 5;
        chunks.append(text + QStringLiteral(".\n [noise]\n"));
    }
    return chunks;
}

void measureText() {
    const auto raw = hourOfChunks();
    QStringList tidied;
    measure("an hour of dictation: tidying its 157 chunks", 11, [&] {
        tidied.clear();
        std::transform(raw.begin(), raw.end(), std::back_inserter(tidied), postProcess);
    });
    measure("an hour of dictation: joining them", 11, [&] { mergeAll(tidied); });
    measure("a sentence: tidying it", 101,
            [] { postProcess(QStringLiteral(" Please send the report tomorrow , and call me.\n")); });
}

void measureRecording() {
    PosixFileSystem files;
    const auto path = XdgDirectories::directories().temporary + QStringLiteral("/bench.wav");
    for (const double seconds : {3.0, 28.0, 600.0}) {
        SimulatedMainActor actor;
        FakeAudioEngine engine;
        SoxrAudioConverterFactory converters;
        AudioRecorder recorder(engine, converters, files, actor);
        const std::vector<std::int16_t> sound(static_cast<std::size_t>(seconds * 16000), 8000);
        Figure stops("release of " + wholeNumber(seconds) + " s of speech: trimming and writing it");
        for (int run = 0; run < 11; ++run) {
            recorder.start();
            engine.deliver(sound);
            const auto start = Clock::now();
            recorder.stop(path);
            stops.add(milliseconds(Clock::now() - start));
            files.remove(path);
        }
        stops.print();
    }
}

void measureConversion() {
    SoxrAudioConverterFactory factory;
    constexpr AudioFormat target{16000.0, 1, SampleType::Int16};
    for (const double rate : {44100.0, 48000.0, 96000.0}) {
        const AudioFormat format{rate, 2, SampleType::Float32};
        std::vector<float> second;
        for (int i = 0; i < static_cast<int>(rate) * 2; ++i)
            second.push_back(0.3F * std::sin(static_cast<float>(i) * 0.03F));
        const auto converter = factory.make(format, target);
        const auto name = wholeNumber(rate) + " Hz stereo: ";
        measure(name + "converting a second of it", 21, [&] {
            converter->convert({format, second.size() / 2, second.data()}, 20000);
        });
        double held = 0;
        for (std::size_t frames = 20000; frames < 21000; frames += 50) {
            const auto fresh = factory.make(format, target);
            const auto given = fresh->convert({format, frames, second.data()}, 20000)->size();
            held = std::max(held,
                            1000.0 * static_cast<double>(frames) / rate - static_cast<double>(given) / 16.0);
        }
        printFigure(name + "held back at the end, at most", held, "ms");
    }
}

void measureProcess() {
    PosixChildProcess processes;
    measure("a tool that does nothing: starting it and seeing its end", 51, [&] {
        processes.run({"/bin/true", {}, "/"});
    });
}

} // namespace

int main() {
    measureText();
    measureRecording();
    measureConversion();
    measureProcess();
}
