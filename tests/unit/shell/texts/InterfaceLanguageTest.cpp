// SPDX-License-Identifier: MIT
#include "shell/texts/InterfaceLanguage.h"

#include "FakeFileSystem.h"
#include "FakeInstalledFonts.h"
#include "PrintQt.h"
#include "RecordingConsole.h"
#include "platform/system/Directories.h"
#include "shell/readiness/SessionLackText.h"
#include "shell/texts/TextCatalog.h"
#include "text/Localization.h"

#include <QCoreApplication>
#include <QFile>

#include <gtest/gtest.h>

#include <optional>

#include <cerrno>

using namespace talvera;

namespace {

class InterfaceLanguageTest : public testing::Test {
protected:
    InterfaceLanguageTest() {
        add("en", R"({"paste": "Press Ctrl+V", "both": "English both"})");
        add("de", R"({"both": "Beides"})");
        add("pt-BR", R"({"both": "Ambos"})");
        add("zh-Hans", R"({"both": "两者"})");
    }

    void add(const char* code, const QByteArray& json) {
        files.write(QStringLiteral("/opt/Resources/texts/%1.json").arg(QLatin1String(code)), json);
    }
    void speak(const QString& chosen, const QStringList& preferred = {}) {
        language.reset();
        language.emplace(InterfaceLanguage::Parts{files, directories, console, fonts}, chosen, preferred);
    }
    static QString both() { return localized("both", "Default both"); }

    int argumentCount = 1;
    char name[5] = "test";
    char* arguments[2] = {name, nullptr};
    QCoreApplication application{argumentCount, arguments};
    test::FakeFileSystem files{{"/opt/Resources/texts"}};
    Directories directories{"/tmp", "/home", "/home", "/opt"};
    test::RecordingConsole console;
    test::FakeInstalledFonts fonts;
    std::optional<InterfaceLanguage> language;
};

TEST_F(InterfaceLanguageTest, englishCatalog_wordsDefaultsForThisDesktop) {
    speak("system", {"en-GB", "de"});
    EXPECT_EQ(localized("paste", "Press ⌘V"), "Press Ctrl+V");
    EXPECT_EQ(both(), "English both");
    EXPECT_EQ(localized("unknown", "Default"), "Default");
}

TEST_F(InterfaceLanguageTest, languageThatLacksAKey_fallsBackKeyByKey) {
    speak("de");
    EXPECT_EQ(both(), "Beides");
    EXPECT_EQ(localized("paste", "Press ⌘V"), "Press Ctrl+V");
    EXPECT_EQ(localized("unknown", "Default"), "Default");
}

TEST_F(InterfaceLanguageTest, sessionsLanguages_areTriedInTheirOrder) {
    speak("system", {"xx-YY", "de-AT", "pt-BR"});
    EXPECT_EQ(both(), "Beides");
    speak("system", {"pt_BR"});
    EXPECT_EQ(both(), "Ambos");
    speak("system", {"zh-Hans-CN"});
    EXPECT_EQ(both(), QString::fromUtf8("两者"));
    speak("system", {"xx"});
    EXPECT_EQ(both(), "English both");
    speak("system", {});
    EXPECT_EQ(both(), "English both");
}

TEST_F(InterfaceLanguageTest, sessionsOtherNames_findTheCatalog) {
    add("pt-PT", R"({"both": "Ambas"})");
    for (const auto* const code : {"zh", "zh-CN", "zh_SG", "zh-Hans-SG"}) {
        speak("system", {code});
        EXPECT_EQ(both(), QString::fromUtf8("两者")) << code;
    }
    for (const auto* const code : {"zh-TW", "zh-Hant-HK"}) {
        speak("system", {code, "de"});
        EXPECT_EQ(both(), "Beides") << code;
    }
    for (const auto* const code : {"pt", "pt-AO", "pt-PT"}) {
        speak("system", {code});
        EXPECT_EQ(both(), "Ambas") << code;
    }
}

TEST_F(InterfaceLanguageTest, choice_outrulesTheSession) {
    speak("en", {"de"});
    EXPECT_EQ(both(), "English both");
    speak("pt-BR", {"de"});
    EXPECT_EQ(both(), "Ambos");
}

TEST_F(InterfaceLanguageTest, choiceWithoutACatalog_isEnglish) {
    for (const auto* const code : {"fr", "", "../en", "/etc/passwd", "-", "de/../de"}) {
        speak(QString::fromLatin1(code), {"de"});
        EXPECT_EQ(both(), "English both") << code;
    }
    EXPECT_TRUE(console.logged().isEmpty());
}

TEST_F(InterfaceLanguageTest, languageWithoutAFont_givesWayToTheSessionsNextOne) {
    fonts.lacking = QString::fromUtf8("设");
    speak("system", {"zh-CN", "de"});
    EXPECT_EQ(both(), "Beides");
    EXPECT_EQ(language->missingFont(), "fonts-noto-cjk");
    speak("zh-Hans", {"de"});
    EXPECT_EQ(both(), "Beides");
    EXPECT_EQ(language->missingFont(), "fonts-noto-cjk");
    speak("zh-Hans", {"zh-CN"});
    EXPECT_EQ(both(), "English both");
    EXPECT_EQ(language->missingFont(), "fonts-noto-cjk");
}

TEST_F(InterfaceLanguageTest, fontThatNobodyNeeds_isNotMissed) {
    fonts.lacking = QString::fromUtf8("设あЖ");
    speak("system", {"de", "zh-CN"});
    EXPECT_EQ(both(), "Beides");
    EXPECT_FALSE(language->missingFont());
    fonts.lacking = QString::fromUtf8("あЖ");
    speak("zh-Hans");
    EXPECT_EQ(both(), QString::fromUtf8("两者"));
    EXPECT_FALSE(language->missingFont());
}

TEST_F(InterfaceLanguageTest, eachScript_hasItsPackage) {
    fonts.lacking = QString::fromUtf8("设設Ж"
                                      "ж");
    for (const auto& [code, package] : {std::pair{"ja", "fonts-noto-cjk"},
                                        {"ru", "fonts-inter"},
                                        {"uk", "fonts-inter"},
                                        {"zh-Hans", "fonts-noto-cjk"}}) {
        add(code, R"({"both": "unreadable"})");
        speak(code);
        EXPECT_EQ(both(), "English both");
        EXPECT_EQ(language->missingFont(), package) << code;
    }
}

TEST_F(InterfaceLanguageTest, end_leavesTheDefaults) {
    speak("de");
    language.reset();
    EXPECT_EQ(both(), "Default both");
}

TEST_F(InterfaceLanguageTest, brokenCatalog_isLeftOutAndLogged) {
    for (const QByteArray broken : {"", "{", "[]", "null", "{\"both\": \"Bei", "\xff\xfe", "\0\0\0"}) {
        add("de", broken);
        speak("de");
        EXPECT_EQ(both(), "English both");
        EXPECT_FALSE(console.logged().isEmpty());
    }
    add("de", QByteArray(2 * 1024 * 1024, ' '));
    speak("de");
    EXPECT_EQ(both(), "English both");
}

TEST_F(InterfaceLanguageTest, brokenEnglishCatalog_leavesTheDefaults) {
    add("en", "{]");
    speak("system", {"en"});
    EXPECT_EQ(both(), "Default both");
    files.remove("/opt/Resources/texts/en.json");
    speak("de");
    EXPECT_EQ(both(), "Beides");
    EXPECT_EQ(localized("paste", "Default"), "Default");
}

TEST_F(InterfaceLanguageTest, unreadableCatalog_isLeftOut) {
    files.failReads("/opt/Resources/texts/de.json", EIO);
    speak("de");
    EXPECT_EQ(both(), "English both");
}

TEST_F(InterfaceLanguageTest, entriesThatAreNoTexts_areLeftOut) {
    add("de", R"({"both": 7, "paste": "", "other": {"deeper": "x"}, "good": "Gut"})");
    speak("de");
    EXPECT_EQ(both(), "English both");
    EXPECT_EQ(localized("paste", "Default"), "Press Ctrl+V");
    EXPECT_EQ(localized("good", "Good"), "Gut");
}

TEST(TextCatalog, nestingWithoutEnd_isNoCatalog) {
    EXPECT_FALSE(TextCatalog::parse(QByteArray(100'000, '[')));
    EXPECT_FALSE(TextCatalog::parse(QByteArray("{\"a\":").repeated(100'000)));
}

TEST(TextCatalog, englishOneThatWeShip_isOne) {
    QFile file(QStringLiteral(TALVERA_TEXTS "/en.json"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const auto texts = TextCatalog::parse(file.readAll());
    ASSERT_TRUE(texts);
    EXPECT_EQ(texts->value("hud.focus.clipboard.byPreference"),
              QString::fromUtf8("Focus changed — text copied to clipboard. Press Shift+Insert to paste."));
}

TEST(SessionLackText, eachLack_hasAPlainSentence) {
    for (const auto lack : {SessionLack::Permission, SessionLack::KnownSession, SessionLack::KeyWatching,
                            SessionLack::KeyPosting, SessionLack::ActiveWindow})
        EXPECT_GT(sessionLackText(lack).size(), 30);
}

} // namespace
