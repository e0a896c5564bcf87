// SPDX-License-Identifier: MIT
#pragma once

#include "persistence/AppSettings.h"
#include "platform/system/PreferenceStore.h"

#include <nlohmann/json.hpp>

namespace talvera::test {

/// Settings and stored preferences in the form in which tests write them down. What can't be read throws
/// std::invalid_argument.

/// All settings by name: enumerations by raw value, bindings in their persisted form, null for none.
nlohmann::ordered_json settingsToJson(AppSettings& settings);

/// Assigns the setting of this name, as settingsToJson() writes it.
void assignSetting(AppSettings& settings, const QString& name, const nlohmann::json& value);

/// {"type": ..., "value": ...}, the type one of "bool", "int", "double", "string", "data" and "strings"; data
/// is written as text.
nlohmann::ordered_json preferenceToJson(const PreferenceValue& value);
PreferenceValue preferenceFromJson(const nlohmann::json& entry);

} // namespace talvera::test
