// SPDX-License-Identifier: MIT
#pragma once

#include "platform/system/PreferenceStore.h"

#include <map>
#include <optional>

namespace talvera::test {

/// Preferences that live as long as the object. Tests look at `values` directly.
class InMemoryPreferenceStore final : public PreferenceStore {
public:
    std::optional<PreferenceValue> object(const QString& key) const override {
        const auto found = values.find(key);
        return found != values.end() ? std::optional(found->second) : std::nullopt;
    }
    void set(const QString& key, const PreferenceValue& value) override {
        values[key] = value;
        save();
    }
    void remove(const QString& key) override {
        values.erase(key);
        save();
    }

    std::map<QString, PreferenceValue> values;

    /// Whether the disk refuses to take them; the next change after that then succeeds.
    void refuseSaves(bool refuses) {
        m_refusesSaves = refuses;
        if (refuses && !m_saved)
            m_saved = values;
    }
    /// What the next process finds.
    const std::map<QString, PreferenceValue>& saved() const { return m_saved ? *m_saved : values; }

private:
    void save() {
        if (!m_refusesSaves)
            m_saved.reset();
    }

    bool m_refusesSaves = false;
    std::optional<std::map<QString, PreferenceValue>> m_saved; ///< where it isn't what `values` are
};

} // namespace talvera::test
