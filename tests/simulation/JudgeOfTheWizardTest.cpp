// SPDX-License-Identifier: MIT
//
// What the judge knows of the wizard, and of the model that it fetches.
#include "JudgeFixture.h"
#include "models/ModelStore.h"
#include "shell/onboarding/OnboardingController.h"

using namespace talvera;
using namespace talvera::simulation;

namespace {

class JudgeOfTheWizard : public JudgeFixture {
protected:
    OnboardingController& wizard() { return world().agent().onboarding; }
    QString model() { return world().agent().models.modelMainURL; }

    /// Between two turns, before anything is made good.
    const QStringList look{QStringLiteral("9 the permissions are looked at")};
};

TEST_F(JudgeOfTheWizard, firstStart_isNotComplainedOf) {
    for (const auto* words :
         {"set hasOnboarded to false", "the model is missing", "the model comes within 3 s"})
        trial.give(QString::fromUtf8(words));
    const auto goesOn = QStringLiteral("%1 the user goes on in the wizard");
    QStringList things;
    for (const auto* at : {"1", "2", "3", "4", "5"})
        things << goesOn.arg(QString::fromUtf8(at));
    things << QStringLiteral("7 the hotkey goes down") << QStringLiteral("8 the hotkey comes up")
           << goesOn.arg(QStringLiteral("12"));
    EXPECT_EQ(verdict(things), QStringLiteral("nothing"));
    EXPECT_EQ(world().demoStarts, 1);
    EXPECT_TRUE(world().settings.hasOnboarded.get());
}

TEST_F(JudgeOfTheWizard, hotkeyThatIsTakenWithoutADemo_isNoticed) {
    sabotage = [this] { wizard().captureHotkey.set(true); };
    EXPECT_EQ(verdict(look), QStringLiteral("the wizard has the hotkey and doesn't show its demo"));
}

TEST_F(JudgeOfTheWizard, demoWithoutTheHotkey_isNoticed) {
    trial.give(QStringLiteral("set hasOnboarded to false"));
    sabotage = [this] { wizard().step.set(OnboardingController::DemoStep); };
    EXPECT_EQ(verdict(look), QStringLiteral("the wizard shows its demo without the hotkey"));
}

TEST_F(JudgeOfTheWizard, hotkeyThatStandsStill_isNoticed) {
    sabotage = [this] { wizard().suspendHotkey.set(true); };
    EXPECT_EQ(verdict(look), QStringLiteral("the hotkey stands still though no chord is being recorded"));
}

TEST_F(JudgeOfTheWizard, demoThatNobodySees_isNoticed) {
    sabotage = [this] { wizard().demoPhase.set({DemoPhase::Kind::Recording}); };
    EXPECT_EQ(verdict(look), QStringLiteral("the demo records and the wizard hasn't the hotkey"));
}

TEST_F(JudgeOfTheWizard, halfModel_isNoticed) {
    sabotage = [this] { world().disk.write(model(), "the"); };
    EXPECT_EQ(verdict(look), QStringLiteral("a half model stands in the place of a whole one"));
}

TEST_F(JudgeOfTheWizard, recordingWithoutAModel_isNoticed) {
    sabotage = [this] {
        trial.judge().hear(QStringLiteral("the model is missing"));
        at(0.3, [this] { world().disk.remove(model()); });
    };
    EXPECT_EQ(verdict({"0.1 the hotkey goes down"}), QStringLiteral("a recording began without a model"));
}

TEST_F(JudgeOfTheWizard, fileThatADownloadHasLeft_isNoticed) {
    sabotage = [this] { world().disk.write(world().agent().models.downloadsDir + "/main-1.tmp", "the"); };
    EXPECT_EQ(verdict({}), QStringLiteral("a download has left a file"));
}

} // namespace
