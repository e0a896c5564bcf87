// SPDX-License-Identifier: MIT
// From the first start to the first sentence: what a user does who has never seen the program.
#include "Wizard.h"

#include <QFileInfo>

using namespace talvera::test;

namespace {

class FirstStart : public WizardTest {
protected:
    static constexpr int lastStep = 5;

    bool hasModel() const {
        return QFileInfo::exists(data.filePath("data/Talvera/models/ggml-medium-q5_0.bin"));
    }
    /// Says a sentence while this holds what records.
    void sayToTheDemo(const std::function<void()>& press, const std::function<void()>& release) {
        press();
        agent->await("demo recording");
        voice.sayAndWait(spoken("Good morning."));
        release();
        agent->await("demo done");
        EXPECT_EQ(shown("label", "What you said").description, "Good morning.");
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

TEST_F(FirstStart, byKeyboardAlone_leadsToASentenceInAnEditor) {
    startWizard();
    for (int step = 1; step <= 3; ++step) {
        keys.tap(Key::enter);
        awaitStep(step);
    }
    awaitButton("Continue");
    keys.tap(Key::enter);
    awaitStep(4);
    keys.tap(Key::enter);
    awaitStep(lastStep);
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
        for (int step = 1; step <= closedAt; ++step) {
            awaitButton(step == 1 ? "Get started" : "Continue");
            keys.tap(Key::enter);
            awaitStep(step);
        }
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

TEST_F(FirstStart, pressWithoutAModel_bringsTheWizard) {
    home.setPreferences({});
    startWizard();
    closeWizard();
    QFile::remove(data.filePath("data/Talvera/models/ggml-medium-q5_0.bin"));
    keys.press(Key::rightControl);
    EXPECT_TRUE(wizardComes());
    keys.release(Key::rightControl);
    EXPECT_EQ(agent->count("menu recording"), 0);
}
