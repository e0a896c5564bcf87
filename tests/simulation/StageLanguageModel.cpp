// SPDX-License-Identifier: MIT
#include "Stage.h"

#include <optional>
#include <utility>

// The language model, and what it writes.

namespace talvera::simulation {

using test::ModelAnswer;

namespace {

/// The answer in pieces, as it grows.
ModelAnswer answerOf(const QString& content, Duration takes) {
    constexpr qsizetype pieces = 4;
    ModelAnswer answer;
    for (qsizetype piece = 1; piece <= pieces; ++piece)
        answer.snapshots.push_back({takes / pieces, content.left(content.size() * piece / pieces)});
    return answer;
}

LanguageModelError refusal(const QString& how) {
    if (how == u"refuses the language")
        return LanguageModelError(QStringLiteral("unsupportedLanguageOrLocale"));
    if (how == u"won't say it")
        return LanguageModelError(QStringLiteral("guardrailViolation"));
    if (how == u"wants less")
        return LanguageModelError(QStringLiteral("exceededContextWindowSize"));
    return LanguageModelError(QStringLiteral("assetsUnavailable"));
}

} // namespace

void Stage::learnTheLanguageModel() {
    means("a language model is there, and hears (nothing|[a-z]+)", [this](const auto& arguments) {
        m_world.languageModel.reason.reset();
        m_world.languageModel.languages = {"en", "de", "fr", "es"};
        m_world.languageRecognizer.answer =
            arguments[0] == u"nothing" ? std::nullopt : std::optional(arguments[0]);
    });
    means("(first|then) the model writes \"(.*)\" within ([0-9.]+) s(?:, but breaks off after ([0-9]+) "
          "letters)?",
          [this](const auto& arguments) {
              const auto letters = arguments.value(3);
              auto answer = answerOf(letters.isEmpty() ? arguments[1] : arguments[1].left(letters.toInt()),
                                     seconds(arguments[2].toDouble()));
              if (!letters.isEmpty())
                  answer.failure.emplace(QStringLiteral("decodingFailure"),
                                         QStringLiteral("The model broke off"));
              write(std::move(answer), arguments[0] == u"first");
          });
    means("(first|then) the model (refuses the language|won't say it|wants less|is still loading)",
          [this](const auto& arguments) {
              write({{}, refusal(arguments[1])}, arguments[0] == u"first");
          });
}

/// The next answer of the language model; a request for which there is none fails.
void Stage::write(ModelAnswer answer, bool isFirst) {
    if (isFirst)
        m_answers.clear();
    m_answers.push_back(std::move(answer));
    m_world.languageModel.setAnswers(m_answers);
}

} // namespace talvera::simulation
