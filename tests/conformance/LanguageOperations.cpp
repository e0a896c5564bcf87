// SPDX-License-Identifier: MIT
#include "language/AICleanup.h"
#include "language/AppLanguage.h"
#include "language/Language.h"
#include "language/TargetLanguage.h"
#include "operations.h"

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
    const auto& row = TargetLanguage::byCode(request.text("code"));
    return {{"answer",
             row.isSelectable(request.truth("isAvailable"), aiState(request), supportedLanguages(request))}};
}

Answer isSourceSupported(const Request& request) {
    return {{"answer", AICleanup::isSourceSupported(request.text("code"), aiState(request),
                                                    supportedLanguages(request))}};
}

} // namespace

void addLanguageOperations(Driver& driver) {
    driver.add("tables", tables);
    driver.add("byCode", byCode);
    driver.add("isSelectable", isSelectable);
    driver.add("isSourceSupported", isSourceSupported);
}

} // namespace talvera::conformance
