// SPDX-License-Identifier: MIT
// typing: some 300 characters of a dozen scripts, dictated into applications of several toolkits: at what
// pace they are typed, and whether they arrive as they should. The recogniser answers at once; everything
// else is the real agent.
#include "receivers/Receiver.h"
#include "receivers/mixedText.h"
#include "speech/TranscriptRules.h"
#include "support/Dictating.h"
#include "support/Figure.h"
#include "support/PrivateProgram.h"
#include "text/typewriterChunks.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

using namespace talvera;
using namespace talvera::bench;

namespace {

/// What delivery waits per piece of text: 2 ms with the key down, 25 ms behind it.
constexpr double pace = 27;

/// How many characters have to be put in, taken out or changed to make one text of the other.
double differences(const QString& left, const QString& right) {
    const auto a = left.toUcs4();
    const auto b = right.toUcs4();
    std::vector<qsizetype> row(static_cast<std::size_t>(b.size()) + 1);
    for (std::size_t j = 0; j < row.size(); ++j)
        row[j] = static_cast<qsizetype>(j);
    for (qsizetype i = 0; i < a.size(); ++i) {
        qsizetype diagonal = std::exchange(row[0], i + 1);
        for (std::size_t j = 1; j < row.size(); ++j) {
            const auto changed = diagonal + (a[i] == b[static_cast<qsizetype>(j) - 1] ? 0 : 1);
            diagonal = std::exchange(row[j], std::min({changed, row[j] + 1, row[j - 1] + 1}));
        }
    }
    return static_cast<double>(row.back());
}

void typeInto(test::Receiver::Kind kind, const std::string& name, const PrivateProgram& program,
              const QString& text) {
    test::Receiver receiver(kind);
    Dictating dictating({{"typewriterThresholdSeconds", 15.0}}, program.program());
    dictating.holdAndSay(test::spoken(QStringLiteral("Good morning.")));
    dictating.awaitEnd();

    const auto keys = dictating.typed();
    const auto chunks = typewriterChunks(text).size();
    const double lasted = milliseconds(keys.back().at - keys.front().at) + pace;
    printFigure(name + ": time per piece of the text", lasted / static_cast<double>(chunks), "ms",
                Aim::atMost(pace * 1.1));
    receiver.waitForText(text, std::chrono::seconds(5));
    printFigure(name + ": wrong, lost or additional characters", differences(receiver.text(), text), "",
                Aim::atMost(0));
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    using Kind = test::Receiver::Kind;
    try {
        const PrivateProgram program(test::mixedText());
        const auto text = postProcess(test::mixedText());
        typeInto(Kind::Gtk, "GTK editor", program, text);
        typeInto(Kind::Qt, "Qt editor", program, text);
        typeInto(Kind::Terminal, "xterm", program, text);
        typeInto(Kind::Chromium, "Chromium", program, text);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "typing: %s\n", error.what());
        return 1;
    }
    return 0;
}
