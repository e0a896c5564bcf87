// SPDX-License-Identifier: MIT
#include "SettingsViews.h"

using namespace talvera;
using namespace talvera::test;

namespace {

const QString directory = QStringLiteral("/opt/talvera/Resources/licences");

class LicencePage : public SettingsViews {
protected:
    LicencePage() {
        files.createDirectories(directory);
        QByteArray text;
        for (int i = 1; i <= 300; ++i)
            text += "Clause " + QByteArray::number(i) + "\n\n";
        files.write(directory + "/qt.txt", text);
        show();
        model->selectAbout();
        layOut(*view);
    }

    QQuickItem& text() {
        const auto found = shownItems([](QQuickItem& item) { return item.inherits("QQuickListView"); });
        if (found.empty())
            throw std::runtime_error("no text is shown");
        return *found.front();
    }
    double place() { return text().property("contentY").toDouble(); }
    ThirdPartyLicences& licences() { return *model->about()->thirdParties(); }
};

TEST_F(LicencePage, clickOnAName_showsItsText) {
    control("Qt").forceActiveFocus(Qt::TabFocusReason); // comes into sight
    click(control("Qt"));
    EXPECT_EQ(licences().name(), "Qt");
    EXPECT_TRUE(isShown("Clause 1\n"));
    EXPECT_FALSE(isShown("Clause 300\n"));
    click(control("Back"));
    EXPECT_FALSE(licences().isOpen());
    EXPECT_EQ(focused(), "Qt");
}

TEST_F(LicencePage, keyboard_opensReadsAndCloses) {
    control("Qt").forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_Return);
    ASSERT_TRUE(licences().isOpen());
    EXPECT_TRUE(text().parentItem()->hasActiveFocus());
    EXPECT_FALSE(text().parentItem()->property("visualFocus").toBool()) << "nothing else could have it";

    const double start = place();
    press(Qt::Key_Down);
    const double line = place();
    EXPECT_GT(line, start);
    EXPECT_GT(text().property("currentIndex").toInt(), 0) << "what a screen reader says";
    press(Qt::Key_PageDown);
    EXPECT_GT(place(), line + 100);
    press(Qt::Key_PageUp);
    press(Qt::Key_Up);
    press(Qt::Key_Up); // there is none above
    EXPECT_EQ(place(), start);
    press(Qt::Key_End);
    EXPECT_TRUE(isShown("Clause 300\n"));
    press(Qt::Key_Home);
    EXPECT_TRUE(isShown("Clause 1\n"));

    press(Qt::Key_Backtab);
    EXPECT_EQ(focused(), "Back");
    press(Qt::Key_Tab);
    EXPECT_TRUE(text().parentItem()->property("visualFocus").toBool());
    press(Qt::Key_Escape);
    EXPECT_FALSE(licences().isOpen());
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(focused(), "Qt");
    press(Qt::Key_Return);
    press(Qt::Key_Left, Qt::AltModifier);
    EXPECT_FALSE(licences().isOpen());
    press(Qt::Key_Escape);
    EXPECT_FALSE(window.isVisible());
}

TEST_F(LicencePage, anotherSection_leavesIt) {
    licences().open(0);
    press(Qt::Key_PageUp, Qt::ControlModifier);
    EXPECT_EQ(model->section(), "privacy");
    EXPECT_FALSE(licences().isOpen());
    EXPECT_EQ(focused(), "Privacy");
}

TEST_F(LicencePage, clickOnAbout_leadsBackToIt) {
    licences().open(0);
    layOut(*view);
    click(control("About Talvera"));
    EXPECT_FALSE(licences().isOpen());
    EXPECT_EQ(focused(), "About Talvera");
}

} // namespace
