// SPDX-License-Identifier: MIT
#include "InMemoryPreferenceStore.h"
#include "SimulatedMainActor.h"
#include "UnseenHUDPanel.h"
#include "language/unavailableReason.h"
#include "operations.h"
#include "persistence/AppSettings.h"
#include "shell/MenuBarController.h"
#include "shell/hud/DictationHUDController.h"
#include "shell/panel/durationText.h"
#include "shell/readiness/ReadinessMonitor.h"
#include "shell/settings/relaunchBanner.h"

#include <array>
#include <limits>

namespace talvera::conformance {

namespace {

Answer aiState(const Request& request) {
    std::optional<LanguageModel::UnavailableReason> reason;
    if (!request.truth("available"))
        reason = unavailableReasonFromWords(request.optionalText("reason").value_or(QString()));
    return {{"state", rawValue(ReadinessMonitor::aiStateFor(reason)).toStdString()}};
}

Answer hudLevels(const Request& request) {
    test::SimulatedMainActor actor;
    DictationHUDController hud(actor, [] { return std::make_unique<test::UnseenHUDPanel>(); });
    auto levels = Answer::array();
    for (const auto& input : request.array("inputs")) {
        if (input != "NaN" && !input.is_number())
            throw BadRequest("\"inputs\" must hold numbers");
        hud.setLevel(input.is_number() ? input.get<float>() : std::numeric_limits<float>::quiet_NaN());
        levels.push_back(hud.stateHolder().level.get());
    }
    return {{"levels", levels}};
}

Answer statusIcon(const Request& request) {
    test::SimulatedMainActor actor;
    test::InMemoryPreferenceStore store;
    AppSettings settings(store);
    settings.aiCleanupEnabled.set(request.truth("cleanup"));
    settings.targetLanguageCode.set(request.truth("translate") ? QStringLiteral("en")
                                                               : QStringLiteral("off"));
    MenuBarController menuBar(actor, settings);
    menuBar.state.set(request.named("state", fromRawValue<MenuBarController::State>));
    return {{"symbol", menuBar.statusIconName().toStdString()}};
}

/// The first of a list of languages, which may also stand by itself; nothing when there is none.
std::optional<QString> firstLanguage(const Request& request, const char* field) {
    if (!request.has(field) || !request.value(field).is_array())
        return request.optionalText(field);
    const auto list = request.texts(field);
    return list.isEmpty() ? std::nullopt : std::optional(list.first());
}

Answer relaunchBannerOf(const Request& request) {
    return {{"shown", relaunchBanner(firstLanguage(request, "current"), request.text("selected"),
                                     firstLanguage(request, "preferred"))}};
}

Answer durationTextOf(const Request& request) {
    return {{"text", durationText(request.integer<std::int64_t>("seconds")).toStdString()}};
}

} // namespace

void addShellOperations(Driver& driver) {
    driver.add("aiState", aiState);
    driver.add("durationText", durationTextOf);
    driver.add("hudLevels", hudLevels);
    driver.add("relaunchBanner", relaunchBannerOf);
    driver.add("statusIcon", statusIcon);
}

} // namespace talvera::conformance
