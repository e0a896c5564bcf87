// SPDX-License-Identifier: MIT
#include "Judge.h"

// What must have become of a text that the language model writes.

namespace talvera::simulation {

namespace {

/// So many letters are held back of an answer until it is over, since they may be the beginning of a mark.
constexpr qsizetype heldBack = 20;

QString contentOf(const test::ModelAnswer& answer) {
    return answer.snapshots.empty() ? QString() : answer.snapshots.back().content;
}

/// Something of it has been passed on.
bool hasBegun(const test::ModelAnswer& answer) {
    return contentOf(answer).size() > heldBack;
}

bool refusesLanguage(const test::ModelAnswer& answer) {
    return answer.failure && answer.failure->debugText().contains(QStringLiteral("unsupportedLanguage"));
}

/// A part of what the user reads.
QString wordsFor(const LanguageModelError& failure) {
    if (failure.debugText().contains(QStringLiteral("unsupportedLanguage")))
        return QStringLiteral("Spoken language not supported");
    if (failure.debugText().contains(QStringLiteral("guardrail")))
        return QStringLiteral("Blocked by content policy");
    if (failure.debugText().contains(QStringLiteral("exceeded")))
        return QStringLiteral("Dictation too long");
    if (failure.debugText().contains(QStringLiteral("assets")))
        return QStringLiteral("still loading");
    return failure.localizedDescription();
}

Fault faultOf(const LanguageModelError& failure) {
    if (failure.debugText().contains(QStringLiteral("unsupportedLanguage")))
        return Fault::LanguageRefused;
    return failure.localizedDescription().isEmpty() ? Fault::AnswerRefused : Fault::AnswerBrokenOff;
}

} // namespace

bool Judge::InFlight::isOfModel() const {
    return way == Way::CleanUp || way == Way::ByModel || way == Way::InTwoHops;
}

bool Judge::InFlight::goesByTwoHops() const {
    return way == Way::InTwoHops ||
           (way == Way::ByModel && !answers.empty() && refusesLanguage(answers.front()));
}

void Judge::seeRequest(const test::Effect& effect) {
    if (!m_inFlight || !m_inFlight->isOfModel()) {
        complain(QStringLiteral("the language model was asked for nothing that is wanted"));
        return;
    }
    auto& flight = *m_inFlight;
    const auto text = joinedTexts(flight.texts(flight.goesByTwoHops()));
    const auto input = QString::fromStdString(effect.fields["input"].get<std::string>());
    if (input != QStringLiteral("<raw>%1</raw>").arg(text))
        complain(QStringLiteral("the language model was given another text than was said: ") + input);
    const auto& answer = m_world->languageModel.lastAnswer();
    if (answer.failure)
        m_faults.note(faultOf(*answer.failure));
    else if (contentOf(answer).isEmpty())
        m_faults.note(Fault::AnswerEmpty);
    flight.answers.push_back(answer);
}

/// An answer that fails gives way to the text itself, unless a part of it has been passed on: then nothing
/// more comes. Only answers that are to be pasted are long enough for that, and nothing of them is delivered.
void Judge::judgeAnswer(const QString& transcript) {
    const auto& flight = *m_inFlight;
    const bool goesByTwoHops = flight.goesByTwoHops();
    const auto english = joinedTexts(flight.texts(true));
    if (goesByTwoHops && english.isEmpty()) {
        ++m_tally.empty;
        return;
    }
    const std::size_t requests = goesByTwoHops && flight.way == Way::ByModel ? 2 : 1;
    if (flight.answers.size() != requests) {
        complain(QStringLiteral("the language model was asked %1 times").arg(flight.answers.size()));
        return;
    }
    const auto& answer = flight.answers.back();
    if (!answer.failure) {
        const auto text = contentOf(answer);
        if (text.isEmpty())
            ++m_tally.empty;
        else
            judgeDelivery(text, flight.types);
        return;
    }
    if (!hasBegun(answer))
        judgeDelivery(goesByTwoHops ? english : transcript);
    expectNotice(wordsFor(*answer.failure));
}

} // namespace talvera::simulation
