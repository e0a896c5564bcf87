// SPDX-License-Identifier: MIT
#include "hotkeys/HotkeyBinding.h"

#include "FakeKeyboardLayout.h"

#include <gtest/gtest.h>

#include <unordered_set>

using namespace talvera;
using Key = HotkeyBinding::SpecialKey;
using Kind = HotkeyBinding::DecodingError::Kind;

namespace {

struct Failure {
    Kind kind;
    QString text;
};

Failure failureOf(const char* json) {
    try {
        HotkeyBinding::decoded(json);
    } catch (const HotkeyBinding::DecodingError& error) {
        return {error.kind(), error.description()};
    }
    ADD_FAILURE() << json << " was taken";
    return {};
}

TEST(HotkeyBinding, default_isControlOptionSpace) {
    EXPECT_EQ(HotkeyBinding(), HotkeyBinding::chord(0xC0000, VirtualKey::Space));
    test::FakeKeyboardLayout layout;
    EXPECT_EQ(HotkeyBinding().displayString(layout), "⌃⌥Space");
}

TEST(HotkeyBinding, sameKeyOtherModifiers_isAnotherBinding) {
    EXPECT_NE(HotkeyBinding::chord(0x40000, VirtualKey::Space),
              HotkeyBinding::chord(0x80000, VirtualKey::Space));
    EXPECT_NE(HotkeyBinding::chord(0x40000, VirtualKey::Space),
              HotkeyBinding::chord(0x40000, VirtualKey::Tab));
}

TEST(HotkeyBinding, holdFn_neverEqualsAChord) {
    const auto fn = HotkeyBinding::holdSpecial(Key::Fn);
    EXPECT_NE(fn, HotkeyBinding::chord(0, VirtualKey::A));
    EXPECT_NE(fn, HotkeyBinding::chord(0x800000, VirtualKey::Fn));
    EXPECT_NE(fn, HotkeyBinding::holdSpecial(Key::RightCommand));
    EXPECT_EQ(fn, HotkeyBinding::holdSpecial(Key::Fn));
}

TEST(HotkeyBinding, hash_goesByCaseAndPayload) {
    const std::unordered_set<HotkeyBinding> bindings{
        HotkeyBinding(), HotkeyBinding::chord(0xC0000, VirtualKey::Space),
        HotkeyBinding::chord(0xC0000, VirtualKey::Tab), HotkeyBinding::holdSpecial(Key::Fn),
        HotkeyBinding::holdSpecial(Key::CapsLock)};
    EXPECT_EQ(bindings.size(), 4U);
}

TEST(HotkeyBinding, specialKeys_haveTheirCodesFlagsAndNames) {
    struct Row {
        Key key;
        const char* raw;
        std::uint16_t code;
        std::uint64_t flag;
        const char* name;
    };
    const std::array rows{Row{Key::Fn, "fn", 63, 0x800000, "Fn hold"},
                          Row{Key::RightCommand, "rightCommand", 54, 0x100000, "Right ⌘ hold"},
                          Row{Key::RightOption, "rightOption", 61, 0x80000, "Right ⌥ hold"},
                          Row{Key::CapsLock, "capsLock", 57, 0x10000, "Caps Lock hold"}};
    ASSERT_EQ(allCases<Key>().size(), rows.size());
    test::FakeKeyboardLayout layout;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const auto& row = rows[i];
        EXPECT_EQ(allCases<Key>()[i], row.key);
        EXPECT_EQ(rawValue(row.key), row.raw);
        EXPECT_EQ(fromRawValue<Key>(row.raw), row.key);
        EXPECT_EQ(keyCode(row.key), VirtualKey(row.code));
        EXPECT_EQ(heldFlag(row.key), row.flag);
        EXPECT_EQ(HotkeyBinding::holdSpecial(row.key).displayString(layout), row.name);
    }
    EXPECT_FALSE(fromRawValue<Key>("Fn"));
}

TEST(HotkeyBindingCoding, chord_isWrittenModifiersFirst) {
    EXPECT_EQ(HotkeyBinding().encoded(), R"({"chord":{"modifiers":786432,"keyCode":49}})");
}

TEST(HotkeyBindingCoding, specialKey_isWrittenByItsRawValue) {
    EXPECT_EQ(HotkeyBinding::holdSpecial(Key::RightCommand).encoded(),
              R"({"holdSpecial":{"_0":"rightCommand"}})");
}

TEST(HotkeyBindingCoding, everyBinding_comesBackAsItWas) {
    std::vector<HotkeyBinding> bindings{HotkeyBinding(), HotkeyBinding::chord(0, VirtualKey::A),
                                        HotkeyBinding::chord(UINT64_MAX, VirtualKey(UINT16_MAX)),
                                        HotkeyBinding::chord((std::uint64_t(1) << 53) + 1, VirtualKey::S),
                                        HotkeyBinding::chord((std::uint64_t(1) << 63) + 1, VirtualKey::S)};
    for (const auto key : allCases<Key>())
        bindings.push_back(HotkeyBinding::holdSpecial(key));
    for (const auto& binding : bindings)
        EXPECT_EQ(HotkeyBinding::decoded(binding.encoded()), binding) << binding.encoded().toStdString();
}

TEST(HotkeyBindingCoding, fieldOrderSpacesAndUnknownFields_doNotMatter) {
    EXPECT_EQ(
        HotkeyBinding::decoded(R"( { "x": 1, "chord": { "keyCode": 49.0, "y": [], "modifiers": 786432 } } )"),
        HotkeyBinding());
}

TEST(HotkeyBindingCoding, bothKeys_failWithTheNumberOfKeys) {
    const auto failure =
        failureOf(R"({"chord":{"modifiers":786432,"keyCode":49},"holdSpecial":{"_0":"fn"}})");
    EXPECT_EQ(failure.kind, Kind::TypeMismatch);
    EXPECT_EQ(failure.text, "Invalid number of keys found, expected one.");
}

TEST(HotkeyBindingCoding, noKnownKey_failsWithTheNumberOfKeys) {
    for (const auto* json : {"{}", R"({"tap":{"keyCode":49}})"}) {
        const auto failure = failureOf(json);
        EXPECT_EQ(failure.kind, Kind::TypeMismatch);
        EXPECT_EQ(failure.text, "Invalid number of keys found, expected one.");
    }
}

TEST(HotkeyBindingCoding, unknownSpecialKey_isRefused) {
    EXPECT_EQ(failureOf(R"({"holdSpecial":{"_0":"leftCommand"}})").kind, Kind::DataCorrupted);
}

TEST(HotkeyBindingCoding, missingField_isRefused) {
    EXPECT_EQ(failureOf(R"({"chord":{"modifiers":786432}})").kind, Kind::KeyNotFound);
    EXPECT_EQ(failureOf(R"({"chord":{"keyCode":49}})").kind, Kind::KeyNotFound);
    EXPECT_EQ(failureOf(R"({"holdSpecial":{}})").kind, Kind::KeyNotFound);
}

TEST(HotkeyBindingCoding, wrongType_isRefused) {
    EXPECT_EQ(failureOf(R"({"chord":null})").kind, Kind::TypeMismatch);
    EXPECT_EQ(failureOf(R"({"chord":{"modifiers":"786432","keyCode":49}})").kind, Kind::TypeMismatch);
    EXPECT_EQ(failureOf(R"({"chord":{"modifiers":true,"keyCode":49}})").kind, Kind::TypeMismatch);
    EXPECT_EQ(failureOf(R"({"holdSpecial":{"_0":0}})").kind, Kind::TypeMismatch);
    EXPECT_EQ(failureOf(R"({"holdSpecial":"fn"})").kind, Kind::TypeMismatch);
    EXPECT_EQ(failureOf(R"(["chord"])").kind, Kind::TypeMismatch);
}

TEST(HotkeyBindingCoding, numberOutOfRange_isRefused) {
    for (const auto* keyCode : {"65536", "-1", "49.5", "1e300", "18446744073709551615"}) {
        const auto json = R"({"chord":{"modifiers":0,"keyCode":)" + std::string(keyCode) + "}}";
        EXPECT_EQ(failureOf(json.c_str()).kind, Kind::DataCorrupted) << keyCode;
    }
    for (const auto* modifiers : {"-1", "0.5", "18446744073709551616", "1e20"}) {
        const auto json = R"({"chord":{"modifiers":)" + std::string(modifiers) + R"(,"keyCode":0}})";
        EXPECT_EQ(failureOf(json.c_str()).kind, Kind::DataCorrupted) << modifiers;
    }
}

TEST(HotkeyBindingCoding, noJson_isRefused) {
    for (const auto* json : {"", "chord", "{\"chord\":", "\xff\xfe", "{\"chord\":{\"modifiers\":1,}}"})
        EXPECT_EQ(failureOf(json).kind, Kind::DataCorrupted) << json;
}

TEST(HotkeyBindingDisplay, commandA_onALayoutWhoseKey0WritesA) {
    test::FakeKeyboardLayout layout({{VirtualKey::A, "a"}});
    EXPECT_EQ(HotkeyBinding::chord(0x100000, VirtualKey::A).displayString(layout), "⌘A");
}

TEST(HotkeyBindingDisplay, layoutSwitched_readsDifferently) {
    const auto binding = HotkeyBinding::chord(0x40000, VirtualKey::Y);
    test::FakeKeyboardLayout layout({{VirtualKey::Y, "y"}});
    EXPECT_EQ(binding.displayString(layout), "⌃Y");
    layout.characters[VirtualKey::Y] = "z";
    EXPECT_EQ(binding.displayString(layout), "⌃Z");
    layout.characters[VirtualKey::Y] = "н";
    EXPECT_EQ(binding.displayString(layout), "⌃Н");
}

TEST(HotkeyBindingDisplay, shiftAndControl_readControlFirst) {
    test::FakeKeyboardLayout layout;
    EXPECT_EQ(
        HotkeyBinding::chord(KeyFlag::Shift | KeyFlag::Control, VirtualKey::Space).displayString(layout),
        "⌃⇧Space");
}

TEST(HotkeyBindingDisplay, allModifiers_readInTheirOrderAndOtherBitsAreIgnored) {
    test::FakeKeyboardLayout layout;
    EXPECT_EQ(HotkeyBinding::chord(UINT64_MAX, VirtualKey::Return).displayString(layout), "⌃⌥⇧⌘Return");
}

TEST(HotkeyBindingDisplay, keyWithoutCharacter_readsItsCode) {
    test::FakeKeyboardLayout layout({{VirtualKey::Section, ""}});
    EXPECT_EQ(HotkeyBinding::keyName(VirtualKey(105), layout), "Key 105");
    EXPECT_EQ(HotkeyBinding::keyName(VirtualKey(10), layout), "Key 10");
}

TEST(HotkeyBindingDisplay, namedKeys_doNotAskTheLayout) {
    const std::map<std::uint16_t, const char*> names{{36, "Return"}, {48, "Tab"}, {49, "Space"},
                                                     {51, "Delete"}, {53, "Esc"}, {123, "←"},
                                                     {124, "→"},     {125, "↓"},  {126, "↑"}};
    test::FakeKeyboardLayout layout;
    for (const auto& [code, name] : names) {
        layout.characters[VirtualKey(code)] = "x";
        EXPECT_EQ(HotkeyBinding::keyName(VirtualKey(code), layout), name);
    }
}

TEST(HotkeyBindingDisplay, characterOfSeveralLetters_isUpperCasedWhole) {
    test::FakeKeyboardLayout layout({{VirtualKey::Minus, "ß"}});
    EXPECT_EQ(HotkeyBinding::keyName(VirtualKey::Minus, layout), "SS");
}

} // namespace
