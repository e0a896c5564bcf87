// SPDX-License-Identifier: MIT
// What bindings are called in the catalogs.
#include "FakeKeyboardLayout.h"
#include "PrintQt.h"
#include "hotkeys/HotkeyBinding.h"
#include "shell/texts/TextCatalog.h"

#include <QCoreApplication>
#include <QFile>

#include <gtest/gtest.h>

#include <memory>

using namespace talvera;
using Special = HotkeyBinding::SpecialKey;

namespace {

class KeyNames : public testing::Test {
protected:
    void speak(const char* path) {
        QFile file(QString::fromUtf8(path));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << path;
        auto texts = TextCatalog::parse(file.readAll());
        ASSERT_TRUE(texts) << path;
        catalog = std::make_unique<TextCatalog>(std::move(*texts), QStringLiteral("en"));
        ASSERT_TRUE(QCoreApplication::installTranslator(catalog.get()));
    }

    QString nameOf(Special key) { return HotkeyBinding::holdSpecial(key).displayString(layout); }
    QString nameOf(std::uint64_t modifiers, VirtualKey key) {
        return HotkeyBinding::chord(modifiers, key).displayString(layout);
    }

    static constexpr auto allModifiers =
        KeyFlag::Control | KeyFlag::Option | KeyFlag::Shift | KeyFlag::Command;

    int argc = 1;
    char name[5] = "test";
    char* argv[2] = {name, nullptr};
    QCoreApplication application{argc, argv};
    std::unique_ptr<TextCatalog> catalog;
    test::FakeKeyboardLayout layout{{{VirtualKey::T, "t"}}};
};

TEST_F(KeyNames, inEnglish_areThoseOfAPcKeyboard) {
    speak(TALVERA_TEXTS "/en.json");
    EXPECT_EQ(nameOf(Special::RightCommand), "Right Ctrl");
    EXPECT_EQ(nameOf(Special::RightOption), "Right Alt");
    EXPECT_EQ(nameOf(Special::CapsLock), "Caps Lock");
    EXPECT_EQ(nameOf(Special::Fn), "Fn");
    EXPECT_EQ(nameOf(KeyFlag::Control | KeyFlag::Option | KeyFlag::Command, VirtualKey::T),
              "Ctrl+Alt+Super+T");
    EXPECT_EQ(nameOf(allModifiers, VirtualKey::Space), "Ctrl+Alt+Shift+Super+Space");
    EXPECT_EQ(nameOf(KeyFlag::Shift, VirtualKey::Backspace), "Shift+Backspace");
    EXPECT_EQ(nameOf(0, VirtualKey::F8), "F8");
    EXPECT_EQ(nameOf(0, VirtualKey::PageUp), "Page Up");
    EXPECT_EQ(nameOf(0, VirtualKey(200)), "Key 200");
}

TEST_F(KeyNames, inGerman_areThoseOfAGermanKeyboard) {
    speak(TALVERA_TEXTS "/de.json");
    EXPECT_EQ(nameOf(Special::RightCommand), "Strg rechts");
    EXPECT_EQ(nameOf(allModifiers, VirtualKey::Space), "Strg+Alt+Umschalt+Super+Leertaste");
    EXPECT_EQ(nameOf(0, VirtualKey(200)), "Taste 200");
}

TEST_F(KeyNames, withoutACatalog_areThePlainOnes) {
    EXPECT_EQ(nameOf(Special::RightCommand), "Right ⌘ hold");
    EXPECT_EQ(nameOf(allModifiers, VirtualKey::T), "⌃⌥⇧⌘T");
    EXPECT_EQ(nameOf(0, VirtualKey::F8), "Key 100");
    EXPECT_EQ(nameOf(0, VirtualKey::Insert), "Key 114");
}

} // namespace
