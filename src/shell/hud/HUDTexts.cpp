// SPDX-License-Identifier: MIT
#include "shell/hud/HUDTexts.h"

#include "language/TargetLanguage.h"
#include "shell/texts/languageName.h"
#include "text/Localization.h"

#include <algorithm>

namespace talvera {

namespace {

/// "pt-BR" is "PT".
QString shortCode(const QString& code) {
    return code.section(QLatin1Char('-'), 0, 0).toUpper();
}

/// Clean-up has no state of its own: it is told as a translation to this.
constexpr QLatin1String cleanup("cleanup");

QString translatingLine(const QString& target) {
    if (target == cleanup)
        return localized("hud.cleanup", "Translating to cleanup…");
    const auto& rows = TargetLanguage::all();
    const auto row =
        std::find_if(rows.begin(), rows.end(), [&](auto& each) { return each.displayName == target; });
    return formatted(localized("hud.translating", "Translating to %@…"),
                     row == rows.end() ? target : languageName(row->code, target));
}

} // namespace

QString hudLine(const DictationHUDState& state, bool tapToToggle) {
    if (state.as<DictationHUDState::Listening>())
        return tapToToggle ? localized("hud.release.tap", "Tap again to insert")
                           : localized("hud.release", "Release to insert");
    if (state.as<DictationHUDState::Transcribing>())
        return localized("hud.transcribing", "Transcribing…");
    if (const auto* translating = state.as<DictationHUDState::Translating>())
        return translatingLine(translating->targetDisplayName);
    if (const auto* notice = state.as<DictationHUDState::Notice>())
        return notice->text;
    return {};
}

QString languageIndicator(const QString& sourceLanguageCode, const QString& targetLanguageCode) {
    if (targetLanguageCode == QLatin1String("off"))
        return {};
    const auto source =
        sourceLanguageCode == QLatin1String("auto") ? QStringLiteral("AUTO") : shortCode(sourceLanguageCode);
    return source + QStringLiteral(" → ") + shortCode(targetLanguageCode);
}

QString recordingTime(Duration elapsed) {
    const auto whole = std::max<qint64>(0, std::chrono::duration_cast<std::chrono::seconds>(elapsed).count());
    return QString::asprintf("%02lld:%02lld", static_cast<long long>(whole / 60),
                             static_cast<long long>(whole % 60));
}

PermissionCardTexts permissionCardTexts(DictationHUDState::PermissionKind kind) {
    const bool microphone = kind == DictationHUDState::PermissionKind::Microphone;
    return {microphone ? localized("hud.permission.mic.title", "Microphone access needed")
                       : localized("hud.permission.ax.title", "Accessibility access needed"),
            localized("hud.permission.subtitle", "Tap to open System Settings and grant it"),
            localized("hud.permission.cta", "Open Settings"), localized("hud.permission.dismiss", "Dismiss"),
            microphone ? QStringLiteral("mic.slash.fill")
                       : QStringLiteral("cursorarrow.and.square.on.square.dashed")};
}

} // namespace talvera
