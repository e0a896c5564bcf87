// SPDX-License-Identifier: MIT
// language_model_costs [QUESTIONS [MODEL]]: an answer of a language model as the agent hears it, beside the
// same answer over nothing but a socket, in turns. MODEL is the micro language model, or one of real size
// (tools/large-model/make-language).
#include "language/AICleanup.h"
#include "language/LoadedModel.h"
#include "support/Figure.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <optional>

using namespace talvera;
using namespace talvera::bench;

namespace {

ChatQuestion questionOf(const QString& said) {
    return {AICleanup::cleanupInstructions(CleanupTone::Conversational),
            QStringLiteral("<raw>") + said + QStringLiteral("</raw>")};
}

/// Of the pieces after the first one.
double piecesPerSecond(const AnswerTime& time, int pieces) {
    return (pieces - 1) * 1000.0 / std::max(time.lastPiece - time.firstPiece, 0.001);
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const int questions = argc > 1 ? std::max(std::atoi(argv[1]), 1) : 20;
    const bool isOfRealSize = argc > 2;
    const auto file =
        isOfRealSize ? QString::fromLocal8Bit(argv[2]) : QStringLiteral(TALVERA_MICRO_LANGUAGE_MODEL);
    const auto question =
        questionOf(QStringLiteral("So um please send the report tomorrow. We need butter and paper."));
    const auto other = questionOf(QStringLiteral("Write a letter to Anna.")); // so that none is remembered

    Figure ourFirst("question to the first text");
    Figure bareFirst("  over nothing but a socket");
    Figure firstRatio("  ratio", "");
    Figure firstExtra("  beyond the socket");
    Figure ourPace("tokens after the first", "/s");
    Figure barePace("  over nothing but a socket", "/s");
    Figure paceRatio("  ratio", "");
    try {
        LoadedModel model(file);
        for (int i = 0; i <= questions; ++i) {
            model.askBare(other);
            const auto ours = model.ask(question);
            model.askBare(other);
            const auto bare = model.askBare(question);
            if (i == 0 && questions > 1)
                continue; // what is read from the disk
            ourFirst.add(ours.firstPiece);
            bareFirst.add(bare.firstPiece);
            firstRatio.add(ours.firstPiece / bare.firstPiece);
            firstExtra.add(ours.firstPiece - bare.firstPiece);
            ourPace.add(piecesPerSecond(ours, bare.pieces)); // the agent may hear several at once
            barePace.add(piecesPerSecond(bare, bare.pieces));
            paceRatio.add(piecesPerSecond(ours, bare.pieces) / piecesPerSecond(bare, bare.pieces));
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "language_model_costs: %s\n", error.what());
        return 1;
    }
    ourFirst.print();
    bareFirst.print();
    firstRatio.print();
    firstExtra.print(Aim::atMost(20));
    ourPace.print();
    barePace.print();
    paceRatio.print(isOfRealSize ? std::optional(Aim::atLeast(0.95)) : std::nullopt); // else it takes no time
    return 0;
}
