// SPDX-License-Identifier: MIT
// From the first start to the first sentence: what a user does who has never seen the program.
#include "Wizard.h"

using namespace talvera::test;

namespace {

class FirstStart : public WizardTest {
protected:
    static constexpr int downloadStep = 3;
    static constexpr int lastStep = 5;

    bool hasModel() const { return filesIn("models") == QStringList{"ggml-medium-q5_0.bin"}; }
    /// Waits until the recogniser is warm, so that the voice and it don't contend for the processor.
    void awaitWarmup() const {
        EXPECT_TRUE(eventually([this] {
            return shown("label", "What you said").description == "Your words will appear here.";
        }));
    }
    /// Says a sentence while this holds what records.
    void sayToTheDemo(const std::function<void()>& press, const std::function<void()>& release) {
        press();
        agent->await("demo recording");
        voice.sayAndWait(spoken("Good morning."));
        release();
        agent->await("demo done");
        const auto words = [this] { return shown("label", "What you said").description; };
        EXPECT_TRUE(eventually([&] { return words() == "Good morning."; })) << words().toStdString();
    }
    void finishWizard() {
        EXPECT_TRUE(wizardGoes());
        EXPECT_TRUE(becomes("hasOnboarded", true));
        EXPECT_TRUE(hasModel());
        EXPECT_EQ(agent->count("menu recording"), 0); // the demo is no dictation
        EXPECT_TRUE(isClean());
        dictateIntoAnEditor();
    }
};

} // namespace

TEST_F(FirstStart, byMouseAlone_leadsToASentenceInAnEditor) {
    startWizard();
    clickButton("Get started");
    awaitStep(1);
    clickButton("Continue");
    awaitStep(2);
    shown("label", "All set — you can go on");
    clickButton("Continue");
    awaitStep(3);
    clickButton("Continue"); // as soon as the model is there
    awaitStep(4);
    clickOn("radio button", "Caps Lock");
    EXPECT_TRUE(eventually([this] { return shown("radio button", "Caps Lock").is("checked"); }));
    clickOn("radio button", "Right Ctrl");
    EXPECT_TRUE(eventually([this] { return shown("radio button", "Right Ctrl").is("checked"); }));
    clickButton("Continue");
    awaitStep(lastStep);
    awaitWarmup();
    const auto place = shown("push button", "Hold to talk").place.center();
    keys.pointAt(place.x(), place.y());
    sayToTheDemo([this] { keys.pressButton(); }, [this] { keys.releaseButton(); });
    clickButton("Finish");
    finishWizard();
}

TEST_F(FirstStart, byKeyboardAlone_leadsToASentenceInAnEditor) {
    startWizard();
    goToStep(lastStep);
    awaitWarmup();
    sayToTheDemo([this] { keys.press(Key::rightControl); }, [this] { keys.release(Key::rightControl); });
    keys.tap(Key::tab); // to the button that is held
    sayToTheDemo([this] { keys.press(Key::space); }, [this] { keys.release(Key::space); });
    keys.press(Key::leftShift);
    keys.tap(Key::tab);
    keys.release(Key::leftShift);
    keys.tap(Key::enter);
    finishWizard();
}

TEST_F(FirstStart, closedAtEachStep_comesBackAtTheNextStart) {
    for (int closedAt = 0; closedAt <= lastStep; ++closedAt) {
        startWizard();
        goToStep(closedAt);
        closeWizard();
        EXPECT_NE(stored("hasOnboarded"), true);
        endAgent();
    }
    startWizard();
    closeWizard();
}

TEST_F(FirstStart, closedAndStartedAgain_opensWhereItWasLeft) {
    startWizard();
    keys.tap(Key::enter);
    awaitStep(1);
    closeWizard();
    EXPECT_EQ(AgentProcess::startSecond(home), 0);
    EXPECT_TRUE(wizardComes());
    shown("push button", "Back");
    shown("label", "Step 2 of 6");
}

TEST_F(FirstStart, everyControl_hasANameForScreenReaders) {
    startWizard();
    for (int step = 0; step <= lastStep; ++step) {
        if (step > 0) {
            awaitButton(step == 1 ? "Get started" : "Continue");
            keys.tap(Key::enter);
            awaitStep(step);
        }
        shown("label", QStringLiteral("Step %1 of 6").arg(step + 1));
        for (const auto& element : ScreenReader::read(agent->pid())) {
            if (element.is("focusable")) {
                EXPECT_NE(element.name, "") << step << ": " << element.role.toStdString();
            }
        }
    }
}

TEST_F(FirstStart, downloadThatIsCutOff_isFetchedAgainByItsButton) {
    offer("cut/model");
    startWizard();
    goToStep(downloadStep);
    shown("label", "Waiting for model download…");
    server.letGo();
    shown("label", "Download failed");
    shown("label", "The connection was cut off.");
    EXPECT_EQ(filesIn("models") + filesIn("downloads"), QStringList());
    clickButton("Retry");
    shown("label", "Model ready");
    EXPECT_TRUE(hasModel());
    clickButton("Continue");
    awaitStep(downloadStep + 1);
}

TEST_F(FirstStart, closedWhileTheModelComes_itComesAllTheSame) {
    offer("held/model");
    startWizard();
    goToStep(downloadStep);
    closeWizard();
    server.letGo();
    EXPECT_TRUE(eventually([this] { return hasModel(); }));
    EXPECT_EQ(AgentProcess::startSecond(home), 0);
    EXPECT_TRUE(wizardComes());
    shown("label", "Model ready");
    awaitButton("Continue");
}

TEST_F(FirstStart, endedWhileTheModelComes_leavesNothingAndFetchesItAtTheNextStart) {
    offer("held/model");
    startWizard();
    EXPECT_EQ(server.requests().size(), 1U);
    endAgent();
    EXPECT_EQ(filesIn("models") + filesIn("downloads"), QStringList());
    offer("model");
    startWizard();
    goToStep(downloadStep + 1);
    EXPECT_TRUE(hasModel());
}

TEST_F(FirstStart, pressWithoutAModel_bringsTheWizard) {
    home.setPreferences({});
    offer("held/model"); // so that it doesn't come meanwhile
    startWizard();
    closeWizard();
    keys.press(Key::rightControl);
    EXPECT_TRUE(wizardComes());
    keys.release(Key::rightControl);
    EXPECT_EQ(agent->count("menu recording"), 0);
}
