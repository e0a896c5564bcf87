// SPDX-License-Identifier: MIT
#include "shell/settings/AboutModel.h"
#include "SettingsFixture.h"

#include <QRegularExpression>

using namespace talvera;
using namespace talvera::test;

namespace {

class AboutModelTest : public SettingsFixture {
protected:
    AboutModel about{modelParts.about};
};

TEST_F(AboutModelTest, version_isThePrograms) {
    EXPECT_TRUE(about.version().contains(QRegularExpression("^Version \\d+\\.\\d+\\.\\d+$")))
        << about.version().toStdString();
}

TEST_F(AboutModelTest, details_areThoseOfTheProgramAndTheMachine) {
    EXPECT_TRUE(about.details().startsWith("Talvera: "));
    EXPECT_TRUE(about.details().endsWith("\nSystem: Test 1\nDesktop: none\n"));
}

TEST_F(AboutModelTest, copiedDetails_areOnTheClipboardAndToldOf) {
    about.copyDetails();
    EXPECT_EQ(about.copyResult(), "") << "before the queue has come to it";
    actor.settle();
    EXPECT_EQ(pasteboard.string(), about.details());
    EXPECT_EQ(about.copyResult(), "Copied to the clipboard.");
    about.forget();
    EXPECT_EQ(about.copyResult(), "");
}

TEST_F(AboutModelTest, clipboardThatCantBeHad_isToldOf) {
    pasteboard.refuse();
    about.copyDetails();
    actor.settle();
    EXPECT_EQ(about.copyResult(), "The clipboard can't be had.");
}

TEST_F(AboutModelTest, copyThatOutlivesTheModel_isHarmless) {
    auto gone = std::make_unique<AboutModel>(modelParts.about);
    gone->copyDetails();
    gone.reset();
    actor.settle();
    EXPECT_TRUE(pasteboard.string().has_value());
}

} // namespace
