// SPDX-License-Identifier: MIT
// clean_up_to_text [DICTATIONS [MINUTES]]: with the clean-up by a language model, how long after the hotkey
// was let go the first key of the text arrives, beside what the bare recogniser and then the bare model take
// for the same. And the memory of the agent with all its processes before a model is there, with it at work,
// and so many MINUTES later (eleven are past the time after which the model's server goes).
#include "language/AICleanup.h"
#include "language/LoadedModel.h"
#include "receivers/Receiver.h"
#include "support/BareRecogniser.h"
#include "support/Dictating.h"
#include "support/Figure.h"
#include "support/ProcessTree.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>
#include <thread>

using namespace talvera;
using namespace talvera::bench;

namespace {

void printMemory(const std::string& when, const ProcessTree& tree) {
    std::this_thread::sleep_for(std::chrono::seconds(3)); // the model's server wakes once a second for good
    printFigure("memory (PSS) " + when + ", " + std::to_string(tree.processes().size()) + " processes",
                tree.megabytes(), "MB");
}

void measure(int dictations, std::chrono::minutes rest) {
    const auto sentence = QStringLiteral("Please send the report tomorrow.");
    const auto speech = test::spoken(sentence);
    const auto model = QStringLiteral(TALVERA_MICRO_LANGUAGE_MODEL);
    const auto english = QStringLiteral("en");
    const ChatQuestion question{AICleanup::cleanupInstructions(CleanupTone::Conversational),
                                QStringLiteral("<raw>") + sentence + QStringLiteral("</raw>")};

    Figure agent("release of the hotkey to the first key of what the model writes");
    Figure bare("  the bare recogniser, and then the bare model");
    Figure ratio("  ratio", "");
    Figure extra("  beyond the two");

    LoadedModel bareModel(model);
    test::Receiver editor(test::Receiver::Kind::Gtk);
    Dictating dictating({{"sourceLanguageCode", english},
                         {"typewriterThresholdSeconds", 15.0},
                         {"aiCleanupEnabled", true},
                         {"cleanupTone", "conversational"}});
    const ProcessTree tree(dictating.agent());
    dictating.holdAndSay(speech);
    dictating.awaitEnd();
    printMemory("without a language model", tree);
    dictating.addLanguageModel();
    RecordingKeeper recordings;
    for (int dictation = 0; dictation <= dictations; ++dictation) {
        dictating.holdAndSay(speech);
        const auto wav = recordings.keep();
        dictating.awaitEnd();
        const auto ours = milliseconds(dictating.firstTyped() - dictating.released());
        const auto recogniser =
            milliseconds(timeOfRecognition(QStringLiteral(TALVERA_WHISPER_CLI), wav, english));
        const auto theirs = recogniser + bareModel.askBare(question).firstPiece;
        if (dictation == 0)
            continue; // the model is loaded
        agent.add(ours);
        bare.add(theirs);
        ratio.add(ours / theirs);
        extra.add(ours - theirs);
    }
    agent.print();
    bare.print();
    ratio.print(Aim::atMost(1.05));
    extra.print(Aim::atMost(20));
    printMemory("with it, after a dictation", tree);
    if (rest.count() > 0) {
        std::this_thread::sleep_for(rest);
        printMemory(std::to_string(rest.count()) + " minutes later", tree);
    }
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const int dictations = argc > 1 ? std::max(std::atoi(argv[1]), 1) : 20;
    const auto rest = std::chrono::minutes(argc > 2 ? std::atoi(argv[2]) : 0);
    try {
        measure(dictations, rest);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "clean_up_to_text: %s\n", error.what());
        return 1;
    }
    return 0;
}
