// SPDX-License-Identifier: MIT
#pragma once

#include "platform/keyboard/KeyboardLayout.h"

#include <map>

namespace talvera::test {

/// A layout that writes what a test says.
class FakeKeyboardLayout final : public KeyboardLayout {
public:
    FakeKeyboardLayout() = default;
    explicit FakeKeyboardLayout(std::map<VirtualKey, QString> keys)
        : characters(std::move(keys)) {}

    std::map<VirtualKey, QString> characters;

    std::optional<QString> character(VirtualKey key) override {
        const auto found = characters.find(key);
        return found == characters.end() ? std::nullopt : std::optional(found->second);
    }
};

} // namespace talvera::test
