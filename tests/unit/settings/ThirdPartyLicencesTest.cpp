// SPDX-License-Identifier: MIT
#include "shell/settings/ThirdPartyLicences.h"
#include "FakeFileSystem.h"
#include "PrintQt.h"

#include <QFile>

#include <gtest/gtest.h>

using namespace talvera;
using namespace talvera::test;

namespace {

class ThirdPartyLicencesTest : public testing::Test {
protected:
    void write(const QByteArray& text) { files.write("/licences/at-spi.txt", text); }

    FakeFileSystem files{{"/licences"}};
    ThirdPartyLicences licences{{files, "/licences"}};
};

TEST_F(ThirdPartyLicencesTest, everythingHasALicenceAndItsWholeText) {
    EXPECT_GT(licences.parties().size(), 10);
    for (const auto& each : licences.parties()) {
        const auto party = each.value<ThirdParty>();
        EXPECT_NE(party.licence, "") << qPrintable(party.name);
        QFile text(QStringLiteral(TALVERA_LICENCES "/%1.txt").arg(party.file));
        ASSERT_TRUE(text.open(QFile::ReadOnly)) << qPrintable(text.fileName());
        const auto words = text.readAll();
        EXPECT_GT(words.size(), 1000) << qPrintable(party.name);
        EXPECT_TRUE(words.contains("opyright")) << qPrintable(party.name);
    }
}

TEST_F(ThirdPartyLicencesTest, text_isDividedAtEmptyLinesAndWhenThereAreNone) {
    QByteArray text = "one\n  two\n\n\n \nthree\n";
    for (int i = 0; i < 40; ++i)
        text += "line\n";
    write(text);
    licences.open(0);
    const auto passages = licences.passages();
    ASSERT_EQ(passages.size(), 4);
    EXPECT_EQ(passages.at(0), "one\n  two\n");
    EXPECT_TRUE(passages.at(1).startsWith("three\nline"));
    EXPECT_EQ(passages.at(1).count('\n'), 15);
    EXPECT_EQ(passages.join('\n').count("line"), 40);
}

TEST_F(ThirdPartyLicencesTest, textThatIsMissingOrEmpty_saysWhereItBelongs) {
    licences.open(0);
    EXPECT_EQ(licences.passages(),
              QStringList("The text can't be read. It belongs into this file: /licences/at-spi.txt"));
    EXPECT_EQ(licences.name(), "AT-SPI");
    write("\n \n");
    licences.open(0);
    EXPECT_TRUE(licences.passages().join(QString()).contains("at-spi.txt"));
}

TEST_F(ThirdPartyLicencesTest, bytesThatAreNoText_doNoHarm) {
    write("Copyright \xff\xfe\0 caf\xc3\xa9");
    licences.open(0);
    EXPECT_EQ(licences.passages().size(), 1);
}

TEST_F(ThirdPartyLicencesTest, closed_isRememberedUntilItIsForgotten) {
    write("words");
    EXPECT_FALSE(licences.isOpen());
    EXPECT_EQ(licences.last(), -1);
    licences.open(0);
    EXPECT_TRUE(licences.isOpen());
    EXPECT_EQ(licences.name(), "AT-SPI");
    EXPECT_EQ(licences.licence(), "LGPL-2.1");
    licences.close();
    EXPECT_FALSE(licences.isOpen());
    EXPECT_EQ(licences.name(), "");
    EXPECT_EQ(licences.last(), 0);
    licences.open(0);
    licences.forget();
    EXPECT_FALSE(licences.isOpen());
    EXPECT_EQ(licences.last(), -1);
}

} // namespace
