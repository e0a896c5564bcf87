// SPDX-License-Identifier: MIT
#include "text/Localization.h"

#include "delivery/FocusNotice.h"
#include "shell/hud/FocusNoticeText.h"
#include "shell/panel/durationText.h"
#include "shell/texts/languageName.h"

#include <QCoreApplication>
#include <QTranslator>

#include <gtest/gtest.h>

#include <map>
#include <string>

using namespace talvera;

namespace {

/// A catalog that knows a few keys.
class Catalog final : public QTranslator {
public:
    std::map<std::string, QString> texts;
    QString translate(const char*, const char* key, const char*, int) const override {
        const auto found = texts.find(key);
        return found == texts.end() ? QString() : found->second;
    }
    bool isEmpty() const override { return texts.empty(); }
};

class WithCatalog : public testing::Test {
protected:
    int argc = 1;
    char name[5] = "test";
    char* argv[2] = {name, nullptr};
    QCoreApplication application{argc, argv};
    Catalog catalog;

    void install(std::map<std::string, QString> texts) {
        catalog.texts = std::move(texts);
        ASSERT_TRUE(QCoreApplication::installTranslator(&catalog));
    }
};

TEST(Localization, withoutACatalog_theDefaultShows) {
    EXPECT_EQ(localized("menu.status.title.idle", "Ready — go"), QString::fromUtf8("Ready — go"));
}

TEST_F(WithCatalog, knownKey_showsTheCatalogsText) {
    install({{"menu.status.title.idle", "Bereit"}});
    EXPECT_EQ(localized("menu.status.title.idle", "Ready"), "Bereit");
}

TEST_F(WithCatalog, unknownKey_fallsBackToItsDefaultAlone) {
    install({{"menu.status.title.idle", "Bereit"}});
    EXPECT_EQ(localized("menu.status.title.recording", "Recording"), "Recording");
}

TEST_F(WithCatalog, missingApplicationName_hasOneWordingForBothNotices) {
    install({{"hud.focus.clipboard.originalApp", "Das Programm"}});
    EXPECT_TRUE(focusNoticeText({FocusNotice::Kind::ClipboardOriginalGone, ""})
                    .text.startsWith("Das Programm closed"));
    EXPECT_TRUE(focusNoticeText({FocusNotice::Kind::ClipboardReactivateFailed, ""})
                    .text.startsWith("Couldn't switch back to Das Programm "));
}

TEST_F(WithCatalog, durationsAndLanguages_comeFromTheCatalog) {
    install({{"duration.seconds", "%lld Sek."},
             {"duration.minutes", "%lld Min."},
             {"duration.hours", "%lld Std. %lld Min."},
             {"language.de", "Deutsch"}});
    EXPECT_EQ(durationText(45), "45 Sek.");
    EXPECT_EQ(durationText(120), "2 Min.");
    EXPECT_EQ(durationText(2 * 3600 + 5 * 60), "2 Std. 5 Min.");
    EXPECT_EQ(languageName("de", "German"), "Deutsch");
    EXPECT_EQ(languageName("vi", "Vietnamese"), "Vietnamese");
}

TEST(Localization, formatted_replacesTheFirstPlaceholderOnly) {
    EXPECT_EQ(formatted("%@ and %@", "one"), "one and %@");
    EXPECT_EQ(formatted("nothing", "one"), "nothing");
}

} // namespace
