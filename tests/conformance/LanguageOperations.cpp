// SPDX-License-Identifier: MIT
#include "FakeLanguageModel.h"
#include "SimulatedMainActor.h"
#include "language/AICleanup.h"
#include "language/AppLanguage.h"
#include "language/Language.h"
#include "language/PartStream.h"
#include "language/TargetLanguage.h"
#include "operations.h"

#include <algorithm>

namespace talvera::conformance {

namespace {

Answer toJson(const Language& row) {
    return {{"code", row.code.toStdString()}, {"displayName", row.displayName.toStdString()}};
}

Answer toJson(const TargetLanguage& row) {
    return {{"code", row.code.toStdString()},
            {"displayName", row.displayName.toStdString()},
            {"requiresAI", row.requiresAI}};
}

Answer toJson(const AppLanguage& row) {
    return {{"code", row.code.toStdString()}, {"nativeName", row.nativeName.toStdString()}};
}

template <typename Row>
Answer rows() {
    auto list = Answer::array();
    for (const auto& row : Row::all())
        list.push_back(toJson(row));
    return list;
}

QSet<QString> supportedLanguages(const Request& request) {
    const auto codes = request.texts("supported");
    return {codes.begin(), codes.end()};
}

AIAvailabilityState aiState(const Request& request) {
    return request.named("aiState", &fromRawValue<AIAvailabilityState>);
}

Answer tables(const Request&) {
    return {{"languages", rows<Language>()},
            {"targets", rows<TargetLanguage>()},
            {"appLanguages", rows<AppLanguage>()}};
}

Answer byCode(const Request& request) {
    const auto table = request.text("table");
    const auto code = request.text("code");
    if (table == u"Language")
        return {{"row", toJson(Language::byCode(code))}};
    if (table == u"TargetLanguage")
        return {{"row", toJson(TargetLanguage::byCode(code))}};
    if (table == u"AppLanguage")
        return {{"row", toJson(AppLanguage::byCode(code))}};
    throw BadRequest("unknown value of \"table\"");
}

Answer isSelectable(const Request& request) {
    const auto isAvailable = request.truth("isAvailable");
    return {{"answer", TargetLanguage::byCode(request.text("code"))
                           .isSelectable(isAvailable, aiState(request), supportedLanguages(request))}};
}

Answer isSourceSupported(const Request& request) {
    return {{"answer", AICleanup::isSourceSupported(request.text("code"), aiState(request),
                                                    supportedLanguages(request))}};
}

/// Reads an answer of the model as the pipeline does.
Task<void> readAnswer(PartStream& stream, Answer& answer) {
    try {
        while (const auto part = co_await stream.next())
            answer["parts"].push_back(part->toStdString());
    } catch (const LanguageModelError&) {
        answer["failed"] = true;
    }
}

Answer sanitise(const Request& request) {
    const auto snapshots = request.texts("snapshots");
    const auto failAfter = request.optionalInteger<qsizetype>("failAfter");
    test::ModelAnswer script;
    for (const auto& snapshot :
         failAfter ? snapshots.first(std::clamp<qsizetype>(*failAfter, 0, snapshots.size())) : snapshots)
        script.snapshots.push_back({{}, snapshot});
    if (failAfter && *failAfter <= snapshots.size())
        script.failure.emplace(QStringLiteral("it breaks off"));

    test::SimulatedMainActor actor;
    test::FakeLanguageModel model(actor);
    model.setAnswers({std::move(script)});
    const auto stream = AICleanup::stream(actor, model, {}, {}, false);
    Answer answer{{"parts", Answer::array()}, {"failed", false}};
    actor.start([&]() -> Task<void> { return readAnswer(*stream, answer); });
    actor.settle();
    return answer;
}

Answer classify(const Request& request) {
    const LanguageModelError error(request.text("debug"),
                                   request.optionalText("description").value_or(QString()));
    const auto failure = AICleanup::classify(error);
    return {{"failure", rawValue(failure.kind).toStdString()}, {"text", failure.text().toStdString()}};
}

Answer cleanupInstructions(const Request& request) {
    const auto tone = request.named("tone", &fromRawValue<CleanupTone>);
    return {{"text", AICleanup::cleanupInstructions(tone).toStdString()}};
}

Answer translationInstructions(const Request& request) {
    return {{"text", AICleanup::translationInstructions(request.text("language")).toStdString()}};
}

} // namespace

void addLanguageOperations(Driver& driver) {
    driver.add("tables", tables);
    driver.add("byCode", byCode);
    driver.add("isSelectable", isSelectable);
    driver.add("isSourceSupported", isSourceSupported);
    driver.add("sanitise", sanitise);
    driver.add("classify", classify);
    driver.add("cleanupInstructions", cleanupInstructions);
    driver.add("translationInstructions", translationInstructions);
}

} // namespace talvera::conformance
