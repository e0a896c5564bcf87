// SPDX-License-Identifier: MIT
#include "FakeInstalledFonts.h"
#include "QtApplication.h"
#include "linux/xdg/QtInstalledFonts.h"

#include <QFile>
#include <QGuiApplication>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <optional>
#include <stdexcept>

using namespace talvera;
using namespace talvera::test;

namespace {

std::optional<QTemporaryDir> fontSettings;

/// A computer whose one font has Latin and Cyrillic letters.
void hideFonts() {
    fontSettings.emplace();
    QFile file(fontSettings->filePath("fonts.conf"));
    const QByteArray settings = R"(<?xml version="1.0"?>
<!DOCTYPE fontconfig SYSTEM "fonts.dtd">
<fontconfig><dir>/usr/share/fonts/opentype/inter</dir><cachedir>)" +
                                fontSettings->filePath("cache").toUtf8() + "</cachedir></fontconfig>";
    if (!file.open(QFile::WriteOnly) || file.write(settings) < 0)
        throw std::runtime_error("the fonts can't be hidden");
    file.close();
    qputenv("FONTCONFIG_FILE", file.fileName().toLocal8Bit());
    qputenv("QT_QPA_PLATFORM", "offscreen");
}

void forgetFonts() {
    fontSettings.reset();
}

[[maybe_unused]] const auto* const environment =
    testing::AddGlobalTestEnvironment(new QtApplication<QGuiApplication>(hideFonts, forgetFonts));

class FakeSubject {
public:
    FakeSubject() { fonts.lacking = QString::fromUtf8("設定あ设置"); }

    FakeInstalledFonts fonts;
};

class QtSubject {
public:
    QtInstalledFonts fonts;
};

template <typename Subject>
class InstalledFontsContract : public testing::Test {
protected:
    bool canShow(const char* text) { return m_subject.fonts.canShow(QString::fromUtf8(text)); }

private:
    Subject m_subject;
};

using Subjects = testing::Types<FakeSubject, QtSubject>;
TYPED_TEST_SUITE(InstalledFontsContract, Subjects);

TYPED_TEST(InstalledFontsContract, lettersOfAFont_canBeShown) {
    EXPECT_TRUE(this->canShow("Settings"));
    EXPECT_TRUE(this->canShow("Żółć, größer"));
    EXPECT_TRUE(this->canShow("Настройки"));
    EXPECT_TRUE(this->canShow(""));
}

TYPED_TEST(InstalledFontsContract, lettersOfNoFont_canNot) {
    EXPECT_FALSE(this->canShow("設定"));
    EXPECT_FALSE(this->canShow("设置"));
    EXPECT_FALSE(this->canShow("あ"));
}

TYPED_TEST(InstalledFontsContract, oneLetterOfNoFont_isEnough) {
    EXPECT_FALSE(this->canShow("Settings 設"));
}

} // namespace
