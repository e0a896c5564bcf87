// SPDX-License-Identifier: MIT
#include "language/TargetLanguage.h"

#include <algorithm>

namespace talvera {

namespace {

std::vector<TargetLanguage> servedByRecogniser() {
    return {
        {QStringLiteral("off"), QStringLiteral("Off (keep source language)"), false},
        {QStringLiteral("en"), QStringLiteral("English"), false},
    };
}

std::vector<TargetLanguage> servedByLanguageModel() {
    return {
        {QStringLiteral("es"), QStringLiteral("Spanish"), true},
        {QStringLiteral("fr"), QStringLiteral("French"), true},
        {QStringLiteral("de"), QStringLiteral("German"), true},
        {QStringLiteral("it"), QStringLiteral("Italian"), true},
        {QStringLiteral("pt-BR"), QStringLiteral("Portuguese (Brazil)"), true},
        {QStringLiteral("nl"), QStringLiteral("Dutch"), true},
        {QStringLiteral("pl"), QStringLiteral("Polish"), true},
        {QStringLiteral("da"), QStringLiteral("Danish"), true},
        {QStringLiteral("no"), QStringLiteral("Norwegian"), true},
        {QStringLiteral("sv"), QStringLiteral("Swedish"), true},
        {QStringLiteral("tr"), QStringLiteral("Turkish"), true},
        {QStringLiteral("zh-CN"), QStringLiteral("Chinese (Simplified)"), true},
        {QStringLiteral("zh-TW"), QStringLiteral("Chinese (Traditional)"), true},
        {QStringLiteral("ja"), QStringLiteral("Japanese"), true},
        {QStringLiteral("ko"), QStringLiteral("Korean"), true},
        {QStringLiteral("vi"), QStringLiteral("Vietnamese"), true},
    };
}

} // namespace

const std::vector<TargetLanguage>& TargetLanguage::all() {
    static const std::vector<TargetLanguage> rows = [] {
        auto joined = servedByRecogniser();
        const auto others = servedByLanguageModel();
        joined.insert(joined.end(), others.begin(), others.end());
        return joined;
    }();
    return rows;
}

const TargetLanguage& TargetLanguage::byCode(const QString& code) {
    static const TargetLanguage english{QStringLiteral("en"), QStringLiteral("English"), false};
    const auto row = std::find_if(all().begin(), all().end(), [&](const auto& r) { return r.code == code; });
    return row != all().end() ? *row : english;
}

bool TargetLanguage::isSelectable(bool isAvailable, AIAvailabilityState state,
                                  const QSet<QString>& supportedLanguageCodes) const {
    if (!requiresAI)
        return true;
    if (!isAvailable || state != AIAvailabilityState::Available)
        return false;
    const auto base = code.section(u'-', 0, 0);
    return supportedLanguageCodes.contains(base);
}

} // namespace talvera
