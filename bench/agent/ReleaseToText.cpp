// SPDX-License-Identifier: MIT
// release_to_text [DICTATIONS [ours]]: how long after the hotkey was let go the first key of the text
// arrives, beside what the bare recogniser needs for the same recording with the same arguments. Each
// dictation is followed by one run of the bare tool, so that both meet the machine in the same mood. Once
// with the real tool, and once with one that answers at once, which shows our own part alone; with "ours"
// only that.
#include "receivers/Receiver.h"
#include "support/BareRecogniser.h"
#include "support/Dictating.h"
#include "support/Figure.h"
#include "support/PrivateProgram.h"

#include <QCoreApplication>

#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string>

using namespace talvera;
using namespace talvera::bench;

namespace {

const auto sentence = QStringLiteral("Please send the report tomorrow.");
const auto language = QStringLiteral("en");

struct Aims {
    std::optional<Aim> ratio;
    std::optional<Aim> extra;
};

void compare(const char* name, const QString& program, const QString& tool, int dictations,
             const Aims& aims) {
    const std::string with = std::string(", ") + name;
    Figure agent("release of the hotkey to the first key" + with);
    Figure bare("the bare tool on the same recording" + with);
    Figure ratio("  ratio", "");
    Figure extra("  beyond the bare tool");

    const auto speech = test::spoken(sentence);
    test::Receiver editor(test::Receiver::Kind::Gtk);
    Dictating dictating({{"sourceLanguageCode", language}, {"typewriterThresholdSeconds", 15.0}}, program);
    RecordingKeeper recordings;
    for (int dictation = 0; dictation <= dictations; ++dictation) {
        dictating.holdAndSay(speech);
        const auto wav = recordings.keep();
        dictating.awaitEnd();
        const auto ours = dictating.firstTyped() - dictating.released();
        const auto theirs = timeOfRecognition(tool, wav, language);
        if (dictation == 0)
            continue; // what is done only once, and what is read from the disk
        agent.add(milliseconds(ours));
        bare.add(milliseconds(theirs));
        ratio.add(milliseconds(ours) / milliseconds(theirs));
        extra.add(milliseconds(ours - theirs));
    }
    agent.print();
    bare.print();
    if (aims.ratio)
        ratio.print(aims.ratio);
    extra.print(aims.extra);
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const int dictations = argc > 1 ? std::max(std::atoi(argv[1]), 1) : 20;
    try {
        if (argc <= 2)
            compare("whisper-cli", TALVERA_PROGRAM, QStringLiteral(TALVERA_WHISPER_CLI), dictations,
                    {Aim::atMost(1.02), Aim::atMost(15)});
        const PrivateProgram instant(sentence);
        compare("a tool that answers at once", instant.program(), instant.recogniser(), dictations,
                {std::nullopt, Aim::atMost(15)});
    } catch (const std::exception& error) {
        std::fprintf(stderr, "release_to_text: %s\n", error.what());
        return 1;
    }
    return 0;
}
