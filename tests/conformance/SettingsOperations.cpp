// SPDX-License-Identifier: MIT
#include "InMemoryPreferenceStore.h"
#include "SettingsJson.h"
#include "operations.h"

namespace talvera::conformance {

namespace {

test::InMemoryPreferenceStore storeFrom(const Request& request) {
    test::InMemoryPreferenceStore store;
    for (const auto& [key, entry] : request.object("store").json().items())
        store.values[QString::fromStdString(key)] = test::preferenceFromJson(entry);
    return store;
}

Answer toJson(const test::InMemoryPreferenceStore& store) {
    auto entries = Answer::object();
    for (const auto& [key, value] : store.values)
        entries[key.toStdString()] = test::preferenceToJson(value);
    return entries;
}

Answer loadSettings(const Request& request) {
    auto store = storeFrom(request);
    AppSettings settings(store);
    return {{"settings", test::settingsToJson(settings)}, {"store", toJson(store)}};
}

Answer settingsScript(const Request& request) {
    auto store = storeFrom(request);
    AppSettings settings(store);
    auto notified = Answer::array();
    Cancellables cancellables;
    settings.visit([&](auto& setting) {
        cancellables.push_back(
            setting.observe([&](const auto&) { notified.push_back(setting.key().toStdString()); }));
    });
    for (const auto& step : request.objects("assign"))
        test::assignSetting(settings, step.text("property"), step.value("value"));
    return {{"settings", test::settingsToJson(settings)}, {"store", toJson(store)}, {"notified", notified}};
}

/// What the values of a request can't mean is the request's fault.
Operation reportingBadValues(Answer (*operation)(const Request&)) {
    return [operation](const Request& request) {
        try {
            return operation(request);
        } catch (const std::invalid_argument& bad) {
            throw BadRequest(bad.what());
        }
    };
}

} // namespace

void addSettingsOperations(Driver& driver) {
    driver.add("loadSettings", reportingBadValues(loadSettings));
    driver.add("settingsScript", reportingBadValues(settingsScript));
}

} // namespace talvera::conformance
