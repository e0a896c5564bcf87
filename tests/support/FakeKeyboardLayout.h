// SPDX-License-Identifier: MIT
#pragma once

#include "platform/keyboard/KeyboardLayout.h"

#include <map>

namespace talvera::test {

/// A layout that writes what a test says.
class FakeKeyboardLayout final : public KeyboardLayout {
public:
    FakeKeyboardLayout() = default;
    explicit FakeKeyboardLayout(std::map<std::uint16_t, QString> keys)
        : characters(std::move(keys)) {}

    std::map<std::uint16_t, QString> characters;

    std::optional<QString> character(std::uint16_t keyCode) override {
        const auto found = characters.find(keyCode);
        return found == characters.end() ? std::nullopt : std::optional(found->second);
    }
};

} // namespace talvera::test
