// SPDX-License-Identifier: MIT
#pragma once

#include "platform/system/PreferenceStore.h"

#include <map>

namespace talvera::test {

/// Preferences that live as long as the object. Tests look at `values` directly.
class InMemoryPreferenceStore final : public PreferenceStore {
public:
    std::optional<PreferenceValue> object(const QString& key) const override {
        const auto found = values.find(key);
        return found != values.end() ? std::optional(found->second) : std::nullopt;
    }
    void set(const QString& key, const PreferenceValue& value) override { values[key] = value; }
    void remove(const QString& key) override { values.erase(key); }

    std::map<QString, PreferenceValue> values;
};

} // namespace talvera::test
