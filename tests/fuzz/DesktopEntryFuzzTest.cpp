// SPDX-License-Identifier: MIT
#include "Mutator.h"
#include "linux/applications/DesktopEntry.h"
#include "linux/support/ForeignText.h"

#include <gtest/gtest.h>

using namespace talvera;

namespace {

const auto good = QByteArrayLiteral("#!/usr/bin/env xdg-open\n"
                                    "[Desktop Entry]\n"
                                    "Version=1.0\n"
                                    "Type=Application\n"
                                    "Name=Text Editor\n"
                                    "Name[de]=Textbearbeitung\n"
                                    "Name[de_AT]=Textbearbeitung\\sÖ\n"
                                    "Name[sr@latin]=Uređivač\n"
                                    "StartupWMClass=Gedit\n"
                                    "NoDisplay=false\n"
                                    "Hidden=false\n"
                                    "\n"
                                    "[Desktop Action new-window]\n"
                                    "Name=New Window\n");

const QByteArrayList tokens{"[",
                            "]",
                            "=",
                            "\n",
                            "\r",
                            "\\",
                            "\\n",
                            "#",
                            "Name",
                            "Type",
                            "Hidden=true\n",
                            "[de]",
                            "\xff",
                            "\xE2\x80\xAE",
                            "\x1b[2J",
                            ";",
                            "[Desktop Entry]\n",
                            "Application",
                            QByteArray(1, '\0'),
                            QByteArray(3000, 'a')};

bool isPlain(const QString& text) {
    for (const auto letter : text) {
        if (letter.category() == QChar::Other_Control || letter == QChar(0x202E))
            return false;
    }
    return text.size() <= foreignTextLimit && text.isValidUtf16();
}

TEST(DesktopEntryFuzz, spoiledFile_givesNothingOrAnEntryThatIsFitToBeShown) {
    int entries = 0;
    for (std::uint32_t seed = 1; seed <= 20'000; ++seed) {
        test::Mutator mutator(seed);
        const auto content =
            seed % 10 == 0 ? mutator.noise(mutator.below(2000)) : mutator.mutated(good, tokens);
        const auto entry = parseDesktopEntry(QStringLiteral("org.example.Editor"), content,
                                             {QStringLiteral("de_AT"), QStringLiteral("de")});
        if (!entry)
            continue;
        ++entries;
        ASSERT_TRUE(isPlain(entry->name)) << "seed " << seed;
        ASSERT_TRUE(isPlain(entry->startupWMClass)) << "seed " << seed;
        ASSERT_EQ(entry->id, u"org.example.Editor");
    }
    EXPECT_GT(entries, 5000);
}

TEST(ForeignTextFuzz, anyBytes_becomePlainText) {
    for (std::uint32_t seed = 1; seed <= 20'000; ++seed) {
        test::Mutator mutator(seed);
        const auto bytes = seed % 2 ? mutator.noise(mutator.below(600))
                                    : mutator.mutated("Straße – 日本語 \U0001F600 — Editor", tokens);
        ASSERT_TRUE(isPlain(foreignText(bytes))) << "seed " << seed;
    }
}

} // namespace
