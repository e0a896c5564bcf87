// SPDX-License-Identifier: MIT
#include "delivery/FocusTracker.h"

#include "FakeAccessibility.h"
#include "FakeWorkspace.h"
#include "SimulatedMainActor.h"

#include <gtest/gtest.h>

using namespace talvera;
using namespace talvera::focus_match;
using test::FakeElement;

namespace {

const RunningApplication editor{100, QStringLiteral("org.example.editor"), QStringLiteral("Editor")};
const RunningApplication browser{200, QStringLiteral("org.example.browser"), QStringLiteral("Browser")};
const FocusSnapshot editorSnapshot{100, QStringLiteral("org.example.editor"), QStringLiteral("Editor")};

class FocusTrackerTest : public testing::Test {
protected:
    test::SimulatedMainActor actor;
    test::FakeAccessibility accessibility;
    test::FakeWorkspace workspace;
    FocusTracker tracker{actor, accessibility, workspace};

    FocusTrackerTest() { workspace.runInFront(editor); }

    bool probe(const FakeElement& element) {
        accessibility.answer = element;
        return tracker.hasFocusedTextField();
    }
};

using FocusProbe = FocusTrackerTest;
using FocusPriming = FocusTrackerTest;
using FocusCapture = FocusTrackerTest;
using FocusMatching = FocusTrackerTest;

TEST_F(FocusProbe, textRoles_areTextFieldsWhateverElseTheySay) {
    for (const auto* role : {"AXTextField", "AXTextArea", "AXComboBox", "AXSearchField"})
        EXPECT_TRUE(probe({.role = QString(role), .editable = false})) << role;
}

TEST_F(FocusProbe, role_isComparedExactly) {
    for (const auto* role : {"AXButton", "axtextfield", "AXTextFields", "AXStaticText", ""})
        EXPECT_FALSE(probe({.role = QString(role)})) << role;
}

TEST_F(FocusProbe, editableElementOfAnotherRole_isATextField) {
    EXPECT_TRUE(probe({.role = "AXWebArea", .editable = true}));
    EXPECT_FALSE(probe({.role = "AXWebArea", .editable = false}));
}

TEST_F(FocusProbe, elementWithASettableValue_isATextField) {
    EXPECT_TRUE(probe({.role = "AXGroup", .valueSettable = true}));
}

TEST_F(FocusProbe, elementWithoutARole_goesByTheRest) {
    EXPECT_TRUE(probe({.editable = true}));
    EXPECT_FALSE(probe({}));
}

TEST_F(FocusProbe, unlistedRoleWithNumberOfCharacters_isATextField) {
    EXPECT_TRUE(probe({.role = "AXGroup", .attributes = QStringList{"AXNumberOfCharacters"}}));
}

TEST_F(FocusProbe, unlistedRoleWithSelectedTextRange_isATextField) {
    EXPECT_TRUE(probe({.role = "AXGroup", .attributes = QStringList{"AXRole", "AXSelectedTextRange"}}));
}

TEST_F(FocusProbe, unlistedRoleNotEditableNotSettableNoTextAttributes_isNoTextField) {
    EXPECT_FALSE(probe({.role = "AXGroup",
                        .editable = false,
                        .valueSettable = false,
                        .attributes = QStringList{"AXRole", "AXValue"}}));
}

TEST_F(FocusProbe, attributeNamesThatCantBeRead_countAsNone) {
    EXPECT_FALSE(probe({.role = "AXGroup", .attributes = std::nullopt}));
}

TEST_F(FocusProbe, valueThatIsNoElement_isNoTextFieldAndNoSecondReadIsMade) {
    accessibility.answer = NotAnElement{};
    EXPECT_FALSE(tracker.hasFocusedTextField());
    EXPECT_EQ(accessibility.focusReads, 1);
    EXPECT_TRUE(accessibility.switches.empty());
}

TEST_F(FocusProbe, goodFirstRead_neitherPrimesNorWaits) {
    EXPECT_TRUE(probe({.role = "AXTextField"}));
    EXPECT_TRUE(accessibility.switches.empty());
    EXPECT_EQ(actor.elapsed(), 0.0);
}

TEST_F(FocusProbe, twoEmptyReads_areTheAnswerNo) {
    accessibility.answer = std::monostate{};
    EXPECT_FALSE(tracker.hasFocusedTextField());
    EXPECT_EQ(accessibility.focusReads, 2) << "there is no third attempt";
    EXPECT_EQ(actor.elapsed(), 0.05);
}

TEST_F(FocusProbe, emptyReadThenAValueThatIsNoElement_isTheAnswerNo) {
    accessibility.nextAnswers = {std::monostate{}, NotAnElement{}};
    EXPECT_FALSE(tracker.hasFocusedTextField());
}

TEST_F(FocusPriming, emptyReadThenAGoodOne_primesOnceAndALaterEmptyReadOnlyWaits) {
    accessibility.nextAnswers = {std::monostate{}, FakeElement{.role = "AXTextField"}};
    EXPECT_TRUE(tracker.hasFocusedTextField());
    const std::vector<test::FakeAccessibility::Switch> both{{100, "AXManualAccessibility", true},
                                                            {100, "AXEnhancedUserInterface", true}};
    EXPECT_EQ(accessibility.switches, both);
    EXPECT_EQ(actor.elapsed(), 0.05);

    accessibility.nextAnswers = {std::monostate{}, FakeElement{.role = "AXTextField"}};
    EXPECT_TRUE(tracker.hasFocusedTextField());
    EXPECT_EQ(accessibility.switches, both) << "the two writes are skipped";
    EXPECT_EQ(actor.elapsed(), 0.1) << "the wait is not";
}

TEST_F(FocusPriming, onlyEnhancedUserInterfaceSucceeds_recordsTheProcess) {
    accessibility.acceptsSwitch = [](const QString& name) { return name == "AXEnhancedUserInterface"; };
    tracker.primeAccessibility();
    tracker.primeAccessibility();
    EXPECT_EQ(accessibility.switches.size(), 2U);
}

TEST_F(FocusPriming, onlyManualAccessibilitySucceeds_stillTriesBothAndRecordsTheProcess) {
    accessibility.acceptsSwitch = [](const QString& name) { return name == "AXManualAccessibility"; };
    tracker.primeAccessibility();
    tracker.primeAccessibility();
    EXPECT_EQ(accessibility.switches.size(), 2U);
}

TEST_F(FocusPriming, bothSwitchesFail_theNextProbeTriesAgain) {
    accessibility.acceptsSwitch = [](const QString&) { return false; };
    tracker.primeAccessibility();
    tracker.primeAccessibility();
    EXPECT_EQ(accessibility.switches.size(), 4U);
}

TEST_F(FocusPriming, eachProcess_isPrimedForItself) {
    tracker.primeAccessibility();
    workspace.runInFront(browser);
    tracker.primeAccessibility();
    ASSERT_EQ(accessibility.switches.size(), 4U);
    EXPECT_EQ(accessibility.switches.back().pid, 200);
}

TEST_F(FocusPriming, noFrontApplication_primesNobodyButTheProbeStillWaits) {
    workspace.setFrontmost(std::nullopt);
    accessibility.answer = std::monostate{};
    EXPECT_FALSE(tracker.hasFocusedTextField());
    EXPECT_TRUE(accessibility.switches.empty());
    EXPECT_EQ(actor.elapsed(), 0.05);
}

TEST_F(FocusCapture, textFieldInFront_givesProcessIdentifierAndName) {
    EXPECT_EQ(tracker.captureFocusSnapshot(), editorSnapshot);
}

TEST_F(FocusCapture, frontApplicationWithoutTextField_givesNone) {
    accessibility.setTextFieldFocused(false);
    EXPECT_EQ(tracker.captureFocusSnapshot(), std::nullopt);
}

TEST_F(FocusCapture, noFrontApplication_givesNoneWithoutAProbe) {
    workspace.setFrontmost(std::nullopt);
    EXPECT_EQ(tracker.captureFocusSnapshot(), std::nullopt);
    EXPECT_EQ(accessibility.focusReads, 0);
}

TEST_F(FocusCapture, ownWindowInFront_givesNoneWithoutAProbeYetItsTextFieldCountsAtDelivery) {
    workspace.runInFront({300, QStringLiteral("talvera"), QStringLiteral("Talvera")});
    EXPECT_EQ(tracker.captureFocusSnapshot(), std::nullopt);
    EXPECT_EQ(accessibility.focusReads, 0);
    EXPECT_EQ(tracker.matchFocus(std::nullopt), FocusMatch(NoSnapshotButHaveTextField{}));
}

TEST_F(FocusCapture, frontApplicationWithoutIdentifier_isLeftToTheProbe) {
    workspace.runInFront({300, std::nullopt, QStringLiteral("Nameless")});
    EXPECT_EQ(tracker.captureFocusSnapshot(), (FocusSnapshot{300, std::nullopt, QStringLiteral("Nameless")}));
    accessibility.setTextFieldFocused(false);
    EXPECT_EQ(tracker.captureFocusSnapshot(), std::nullopt);
}

TEST_F(FocusCapture, ownIdentifierAbsent_noApplicationIsTakenForOurs) {
    workspace.ownIdentifier = std::nullopt;
    workspace.runInFront({300, std::nullopt, std::nullopt});
    EXPECT_TRUE(tracker.captureFocusSnapshot());
    workspace.runInFront({301, QStringLiteral("talvera"), std::nullopt});
    EXPECT_TRUE(tracker.captureFocusSnapshot());
    EXPECT_EQ(workspace.ownBundleIDReads, 1) << "read once and kept, absent or not";
}

TEST(FocusSnapshotTest, absentAndPresentStrings_areToldApart) {
    EXPECT_EQ((FocusSnapshot{1, std::nullopt, std::nullopt}), (FocusSnapshot{1, std::nullopt, std::nullopt}));
    EXPECT_NE((FocusSnapshot{1, std::nullopt, std::nullopt}), (FocusSnapshot{1, QString(""), std::nullopt}));
    EXPECT_NE((FocusSnapshot{1, QString("a"), QString("b")}), (FocusSnapshot{1, QString("a"), QString("c")}));
    EXPECT_NE((FocusSnapshot{1, QString("a"), QString("b")}), (FocusSnapshot{2, QString("a"), QString("b")}));
}

TEST_F(FocusMatching, recordedApplicationInFront_isSameWithoutAProbe) {
    accessibility.setTextFieldFocused(false);
    EXPECT_EQ(tracker.matchFocus(editorSnapshot), FocusMatch(Same{}));
    EXPECT_EQ(accessibility.focusReads, 0);
}

TEST_F(FocusMatching, sameProcessUnderAnotherName_isSame) {
    workspace.runInFront({100, std::nullopt, QStringLiteral("Renamed")});
    EXPECT_EQ(tracker.matchFocus(editorSnapshot), FocusMatch(Same{}));
}

TEST_F(FocusMatching, otherApplicationInFront_isDifferentWithTheSnapshot) {
    workspace.runInFront(browser);
    EXPECT_EQ(tracker.matchFocus(editorSnapshot), FocusMatch(DifferentButReactivatable{editorSnapshot}));
    EXPECT_EQ(accessibility.focusReads, 0);
}

TEST_F(FocusMatching, recordedApplicationQuit_isGoneAndNeverDifferent) {
    workspace.runInFront(browser);
    workspace.quit(100);
    EXPECT_EQ(tracker.matchFocus(editorSnapshot), FocusMatch(OriginalGone{}));
}

TEST_F(FocusMatching, recordedApplicationQuitAndNobodyInFront_isGone) {
    workspace.quit(100);
    EXPECT_EQ(tracker.matchFocus(editorSnapshot), FocusMatch(OriginalGone{}));
}

TEST_F(FocusMatching, applicationStartedAgainUnderANewProcess_isGone) {
    workspace.quit(100);
    workspace.runInFront({101, editor.bundleID, editor.localizedName});
    EXPECT_EQ(tracker.matchFocus(editorSnapshot), FocusMatch(OriginalGone{}));
}

TEST_F(FocusMatching, nobodyInFrontButTheRecordedApplicationRuns_isDifferent) {
    workspace.setFrontmost(std::nullopt);
    EXPECT_EQ(tracker.matchFocus(editorSnapshot), FocusMatch(DifferentButReactivatable{editorSnapshot}));
}

TEST_F(FocusMatching, noSnapshot_asksForATextFieldNow) {
    EXPECT_EQ(tracker.matchFocus(std::nullopt), FocusMatch(NoSnapshotButHaveTextField{}));
    accessibility.setTextFieldFocused(false);
    EXPECT_EQ(tracker.matchFocus(std::nullopt), FocusMatch(NoSnapshotNoTextField{}));
}

} // namespace
