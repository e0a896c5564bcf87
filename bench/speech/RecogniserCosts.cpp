// SPDX-License-Identifier: MIT
// recogniser_costs [RUNS]: our build of the recogniser beside the same one without our patches, in turns, so
// that both meet the machine in the same mood.
#include "Speech.h"
#include "linux/posix/PosixChildProcess.h"
#include "linux/posix/PosixFileSystem.h"
#include "speech/WavWriter.h"
#include "speech/WhisperArguments.h"
#include "support/Figure.h"

#include <QTemporaryDir>

#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string>

#include <sys/resource.h>

using namespace talvera;
using namespace talvera::bench;

namespace {

double processorMilliseconds() {
    rusage used{};
    ::getrusage(RUSAGE_CHILDREN, &used);
    const auto of = [](const timeval& time) {
        return 1e3 * static_cast<double>(time.tv_sec) + 1e-3 * static_cast<double>(time.tv_usec);
    };
    return of(used.ru_utime) + of(used.ru_stime);
}

struct Cost {
    double clock;
    double processor;
};

class Recording {
public:
    explicit Recording(const QString& sentence) { writeWAV(m_files, test::spoken(sentence), 16000, m_wav); }

    Cost costOf(const char* tool, const QString& language) {
        const auto seconds = wavDurationSeconds(m_files.size(m_wav).value_or(0));
        const auto arguments = whisperArguments(m_wav, QStringLiteral(TALVERA_MICRO_MODEL), seconds,
                                                WhisperMode::Transcribe, language, std::nullopt);
        const auto used = processorMilliseconds();
        const auto start = Clock::now();
        const auto result = m_process.run(
            {QString::fromUtf8(tool), arguments, m_directory.path(), QStringLiteral("--prompt")});
        if (result.status != 0)
            throw std::runtime_error("the recogniser failed");
        return {milliseconds(Clock::now() - start), processorMilliseconds() - used};
    }

private:
    QTemporaryDir m_directory;
    PosixFileSystem m_files;
    PosixChildProcess m_process;
    QString m_wav = m_directory.path() + QStringLiteral("/a.wav");
};

void compare(Recording& recording, const QString& language, int runs, const Aim& aim) {
    const auto what = language == u"auto" ? std::string("language found out") : std::string("language given");
    Figure stockClock(what + ", without our patches");
    Figure ourClock(what + ", with them");
    Figure stockProcessor("  processor time without");
    Figure ourProcessor("  processor time with");
    Figure ratio("  ratio of the processor times", "");
    for (int run = 0; run <= runs; ++run) {
        const auto stock = recording.costOf(TALVERA_STOCK_WHISPER_CLI, language);
        const auto ours = recording.costOf(TALVERA_WHISPER_CLI, language);
        if (run == 0)
            continue; // what is read from the disk
        stockClock.add(stock.clock);
        ourClock.add(ours.clock);
        stockProcessor.add(stock.processor);
        ourProcessor.add(ours.processor);
        ratio.add(ours.processor / stock.processor);
    }
    stockClock.print();
    ourClock.print();
    stockProcessor.print();
    ourProcessor.print();
    ratio.print(aim);
}

} // namespace

int main(int argc, char** argv) {
    const int runs = argc > 1 ? std::max(std::atoi(argv[1]), 1) : 10;
    try {
        Recording recording(QStringLiteral("Please send the report tomorrow."));
        compare(recording, QStringLiteral("auto"), runs, Aim::below(0.7));
        compare(recording, QStringLiteral("en"), runs, Aim::atMost(1.03));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "recogniser_costs: %s\n", error.what());
        return 1;
    }
    return 0;
}
