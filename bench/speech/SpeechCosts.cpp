// SPDX-License-Identifier: MIT
// speech_costs: what our own part of a dictation costs beside the recogniser.
#include "FakeAudioEngine.h"
#include "SimulatedMainActor.h"
#include "platform/linux/audio/SoxrAudioConverter.h"
#include "platform/linux/posix/PosixChildProcess.h"
#include "platform/linux/posix/PosixFileSystem.h"
#include "platform/linux/xdg/XdgDirectories.h"
#include "speech/AudioRecorder.h"
#include "speech/OverlapMerge.h"
#include "speech/TranscriptRules.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <functional>
#include <vector>

using namespace talvera;
using namespace talvera::test;
using Clock = std::chrono::steady_clock;

namespace {

/// The median of so many runs, in milliseconds.
double medianMilliseconds(int runs, const std::function<void()>& work) {
    std::vector<double> times;
    for (int run = 0; run < runs; ++run) {
        const auto start = Clock::now();
        work();
        times.push_back(std::chrono::duration<double, std::milli>(Clock::now() - start).count());
    }
    std::nth_element(times.begin(), times.begin() + runs / 2, times.end());
    return times[static_cast<std::size_t>(runs / 2)];
}

void print(const char* what, double milliseconds) {
    std::printf("%-66s %9.3f ms\n", what, milliseconds);
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
    print("an hour of dictation: tidying its 157 chunks", medianMilliseconds(11, [&] {
              tidied.clear();
              std::transform(raw.begin(), raw.end(), std::back_inserter(tidied), postProcess);
          }));
    QString text;
    print("an hour of dictation: joining them", medianMilliseconds(11, [&] { text = mergeAll(tidied); }));
    std::printf("  (%lld characters)\n", static_cast<long long>(text.size()));
    print("a sentence: tidying it", medianMilliseconds(101, [] {
              postProcess(QStringLiteral(" Please send the report tomorrow , and call me.\n"));
          }));
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
        std::vector<double> stops;
        for (int run = 0; run < 11; ++run) {
            recorder.start();
            engine.deliver(sound);
            stops.push_back(medianMilliseconds(1, [&] { recorder.stop(path); }));
            files.remove(path);
        }
        std::nth_element(stops.begin(), stops.begin() + 5, stops.end());
        std::printf("release of %5.0f s of speech: trimming and writing it %32.3f ms\n", seconds, stops[5]);
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
        const auto time = medianMilliseconds(21, [&] {
            converter->convert({format, second.size() / 2, second.data()}, 20000);
        });
        double held = 0;
        for (std::size_t frames = 20000; frames < 21000; frames += 50) {
            const auto fresh = factory.make(format, target);
            const auto given = fresh->convert({format, frames, second.data()}, 20000)->size();
            held = std::max(held,
                            1000.0 * static_cast<double>(frames) / rate - static_cast<double>(given) / 16.0);
        }
        std::printf(
            "%6.0f Hz stereo: converting a second of it %37.3f ms; held back at the end, at most %.2f ms\n",
            rate, time, held);
    }
}

void measureProcess() {
    PosixChildProcess processes;
    print("a tool that answers at once: starting it and seeing its end", medianMilliseconds(51, [&] {
              processes.run({"/bin/true", {}, "/"});
          }));
}

} // namespace

int main() {
    measureText();
    measureRecording();
    measureConversion();
    measureProcess();
}
