// SPDX-License-Identifier: MIT
#include "delivery/TextInserter.h"

#include "DeliveryFixture.h"

using namespace talvera;
using Kind = FocusNotice::Kind;

namespace {

class TextInserterTest : public test::DeliveryFixture {};

TEST_F(TextInserterTest, protectionOff_deliversToWhateverHasTheFocusWithoutAnyQuery) {
    settings.protect = false;
    workspace.quit(100);
    accessibility.setTextFieldFocused(false);
    EXPECT_EQ(inserter.insert("hi", ResolvedMode::Typewriter, editorSnapshot), RouteDecision::Direct);
    EXPECT_EQ(inserter.insert(" there", ResolvedMode::Paste, std::nullopt), RouteDecision::Direct);
    finishJobs();
    EXPECT_EQ(keys.text(), "hi there");
    EXPECT_EQ(accessibility.focusReads, 0);
    EXPECT_TRUE(shown.empty());
}

TEST_F(TextInserterTest, sameApplicationInFront_deliversWithoutANotice) {
    EXPECT_EQ(inserter.insert("hi", ResolvedMode::Typewriter, editorSnapshot), RouteDecision::Direct);
    finishJobs();
    EXPECT_EQ(keys.text(), "hi");
    EXPECT_TRUE(shown.empty());
    EXPECT_TRUE(pasteboard.history().isEmpty());
}

TEST_F(TextInserterTest, noSnapshotButATextFieldAtDelivery_deliversWithoutANotice) {
    EXPECT_EQ(inserter.insert("hi", ResolvedMode::Paste, std::nullopt), RouteDecision::Direct);
    finishJobs();
    EXPECT_EQ(keys.text(), "hi");
    EXPECT_TRUE(shown.empty());
}

TEST_F(TextInserterTest, noSnapshotAndNoTextField_goesToTheClipboard) {
    accessibility.setTextFieldFocused(false);
    EXPECT_EQ(inserter.insert("hi", ResolvedMode::Typewriter, std::nullopt), RouteDecision::Clipboard);
    finishJobs();
    EXPECT_EQ(pasteboard.string(), "hi");
    EXPECT_TRUE(keys.events().isEmpty());
    EXPECT_EQ(shown, notices({{Kind::ClipboardNoTextField}}));
}

TEST_F(TextInserterTest, applicationClosed_goesToTheClipboardWithItsName) {
    workspace.quit(100);
    EXPECT_EQ(inserter.insert("hi", ResolvedMode::Typewriter, editorSnapshot), RouteDecision::Clipboard);
    finishJobs();
    EXPECT_EQ(pasteboard.string(), "hi");
    EXPECT_EQ(shown, notices({{Kind::ClipboardOriginalGone, "Editor"}}));
}

TEST_F(TextInserterTest, applicationWithoutANameClosed_hasAnEmptyNameInTheNotice) {
    workspace.quit(100);
    inserter.insert("hi", ResolvedMode::Typewriter, FocusSnapshot{100, std::nullopt, std::nullopt});
    EXPECT_EQ(shown, notices({{Kind::ClipboardOriginalGone, ""}}));
}

TEST_F(TextInserterTest, focusMovedAndTheUserWantsTheClipboard_leavesTheFocusAlone) {
    settings.mode = FocusProtectionMode::ClipboardOnly;
    workspace.runInFront(browser);
    EXPECT_EQ(inserter.insert("hi", ResolvedMode::Paste, editorSnapshot), RouteDecision::Clipboard);
    finishJobs();
    EXPECT_EQ(pasteboard.string(), "hi");
    EXPECT_TRUE(keys.events().isEmpty());
    EXPECT_TRUE(workspace.activations.empty());
    EXPECT_EQ(shown, notices({{Kind::ClipboardByUserPreference}}));
}

TEST_F(TextInserterTest, focusMoved_bringsTheApplicationBackAndDeliversThere) {
    workspace.runInFront(browser);
    keys.focus("browser");
    workspace.onActivate = [this](pid_t) { keys.focus(keys.firstReceiver); };
    EXPECT_EQ(inserter.insert("hi", ResolvedMode::Typewriter, editorSnapshot), RouteDecision::Direct);
    EXPECT_EQ(actor.elapsed(), 0.15) << "the application gets its time to come forward";
    finishJobs();
    EXPECT_EQ(keys.text(), "hi");
    EXPECT_EQ(workspace.activations, std::vector<pid_t>{100});
    EXPECT_EQ(shown, notices({{Kind::PastedIn, "Editor"}})) << "said also of text that was typed";
}

TEST_F(TextInserterTest, activationRefused_goesToTheClipboardWithoutWaiting) {
    workspace.runInFront(browser);
    workspace.activation = test::FakeWorkspace::Activation::Refused;
    EXPECT_EQ(inserter.insert("hi", ResolvedMode::Paste, editorSnapshot), RouteDecision::Clipboard);
    EXPECT_EQ(actor.elapsed(), 0.0);
    finishJobs();
    EXPECT_EQ(pasteboard.string(), "hi");
    EXPECT_EQ(shown, notices({{Kind::ClipboardReactivateFailed, "Editor"}}));
}

TEST_F(TextInserterTest, activationThatBringsAnotherForward_goesToTheClipboardAfterOneAttempt) {
    workspace.runInFront(browser);
    workspace.activation = test::FakeWorkspace::Activation::NoFocus;
    EXPECT_EQ(inserter.insert("hi", ResolvedMode::Paste, editorSnapshot), RouteDecision::Clipboard);
    EXPECT_EQ(workspace.activations.size(), 1U);
    EXPECT_EQ(accessibility.focusReads, 0);
    EXPECT_EQ(shown, notices({{Kind::ClipboardReactivateFailed, "Editor"}}));
}

TEST_F(TextInserterTest, broughtBackButNoTextFieldInFocus_saysItCouldNotSwitchAndStaysThere) {
    workspace.runInFront(browser);
    accessibility.setTextFieldFocused(false);
    EXPECT_EQ(inserter.insert("hi", ResolvedMode::Typewriter, editorSnapshot), RouteDecision::Clipboard);
    finishJobs();
    EXPECT_EQ(pasteboard.string(), "hi");
    EXPECT_TRUE(keys.events().isEmpty());
    EXPECT_EQ(workspace.frontmostApplication()->pid, 100);
    EXPECT_EQ(shown, notices({{Kind::ClipboardReactivateFailed, "Editor"}}));
}

TEST_F(TextInserterTest, applicationThatQuitsWhileItIsBroughtBack_goesToTheClipboard) {
    workspace.runInFront(browser);
    workspace.onActivate = [this](pid_t pid) { workspace.quit(pid); };
    EXPECT_EQ(inserter.insert("hi", ResolvedMode::Paste, editorSnapshot), RouteDecision::Clipboard);
    EXPECT_EQ(shown, notices({{Kind::ClipboardReactivateFailed, "Editor"}}));
}

TEST_F(TextInserterTest, route_handsTheNoticeToItsCallerInsteadOfTheHud) {
    workspace.quit(100);
    EXPECT_EQ(inserter.route("hi", ResolvedMode::Paste, editorSnapshot, collectHandedOver),
              RouteDecision::Clipboard);
    EXPECT_EQ(handedOver, notices({{Kind::ClipboardOriginalGone, "Editor"}}));
    EXPECT_TRUE(shown.empty());
}

TEST_F(TextInserterTest, emptyText_isRoutedAndNoticedButNeitherDeliveredNorCopied) {
    EXPECT_EQ(inserter.insert("", ResolvedMode::Typewriter, editorSnapshot), RouteDecision::Direct);
    EXPECT_EQ(inserter.insert("", ResolvedMode::Paste, editorSnapshot), RouteDecision::Direct);
    workspace.quit(100);
    EXPECT_EQ(inserter.insert("", ResolvedMode::Paste, editorSnapshot), RouteDecision::Clipboard);
    finishJobs();
    EXPECT_TRUE(keys.events().isEmpty());
    EXPECT_TRUE(pasteboard.history().isEmpty());
    EXPECT_EQ(shown, notices({{Kind::ClipboardOriginalGone, "Editor"}}));
}

TEST_F(TextInserterTest, typing_keepsItsPaceAndWaitsAfterTheLastChunkToo) {
    inserter.insert("ab", ResolvedMode::Typewriter, editorSnapshot);
    inserter.copyToClipboard("after");
    std::optional<double> copied;
    queue.async([&] { copied = actor.elapsed(); });
    finishJobs();
    EXPECT_EQ(eventTimes, (std::vector<double>{0.0, 0.002, 0.027, 0.029}));
    EXPECT_DOUBLE_EQ(copied.value(), 0.054);
}

TEST_F(TextInserterTest, typing_sendsOneDownAndOneUpForEachChunk) {
    inserter.insert(QString::fromUtf8("a  be\u0301😀"), ResolvedMode::Typewriter, editorSnapshot);
    finishJobs();
    QStringList chunks;
    for (const auto& event : keys.events())
        chunks.append(event.chunk);
    const QString accented = QString::fromUtf8("e\u0301");
    const QString emoji = QString::fromUtf8("😀");
    EXPECT_EQ(chunks, QStringList({"a  ", "a  ", "b", "b", accented, accented, emoji, emoji}));
    EXPECT_EQ(emoji.size(), 2) << "two UTF-16 units in one stroke";
    EXPECT_EQ(keys.keysDown(), 0);
    EXPECT_EQ(keys.openSessions(), 0);
}

TEST_F(TextInserterTest, strokeThatCantBeMade_isSkippedWithItsWaitsAndTheWholeTextIsOnTheClipboard) {
    keys.canPost = [](const test::PostedKeyEvent& event) { return event.chunk != "b"; };
    inserter.insert("abc", ResolvedMode::Typewriter, editorSnapshot);
    finishJobs();
    EXPECT_EQ(keys.text(), "ac");
    ASSERT_EQ(eventTimes.size(), 4U);
    EXPECT_DOUBLE_EQ(eventTimes[2], 0.054);
    EXPECT_EQ(pasteboard.history(), QStringList{"abc"});
    EXPECT_EQ(shown, notices({{Kind::ClipboardNotPossible}}));
}

TEST_F(TextInserterTest, noStrokeThatCanBeMade_leavesTheTextOnTheClipboardAndSaysSo) {
    keys.canPost = [](const test::PostedKeyEvent&) { return false; };
    inserter.insert("abc", ResolvedMode::Typewriter, editorSnapshot);
    finishJobs();
    EXPECT_EQ(pasteboard.string(), "abc");
    EXPECT_EQ(shown, notices({{Kind::ClipboardNotPossible}}));
}

TEST_F(TextInserterTest, focusMovesWhileTyping_stopsAndLeavesTheWholeTextOnTheClipboard) {
    keys.onPost = [this](const test::PostedKeyEvent& event) {
        if (event.chunk == "b" && event.phase == KeyPhase::Up)
            keys.focus("second");
    };
    EXPECT_EQ(inserter.insert("abc def", ResolvedMode::Typewriter, editorSnapshot), RouteDecision::Direct);
    finishJobs();
    EXPECT_EQ(keys.text(), "ab");
    EXPECT_EQ(keys.text("second"), "");
    EXPECT_EQ(pasteboard.string(), "abc def");
    EXPECT_EQ(shown, notices({{Kind::ClipboardFocusLost}}));
    EXPECT_EQ(keys.openSessions(), 0);
    EXPECT_EQ(keys.keysDown(), 0);
}

TEST_F(TextInserterTest, focusMovesAgainAfterTheApplicationWasBroughtBack_stopsToo) {
    workspace.runInFront(browser);
    keys.onPost = [this](const test::PostedKeyEvent& event) {
        if (event.chunk == "a" && event.phase == KeyPhase::Up)
            keys.focus("second");
    };
    EXPECT_EQ(inserter.insert("abc", ResolvedMode::Typewriter, editorSnapshot), RouteDecision::Direct);
    finishJobs();
    EXPECT_EQ(keys.text(), "a");
    EXPECT_EQ(keys.text("second"), "");
    EXPECT_EQ(pasteboard.string(), "abc");
    EXPECT_EQ(shown, notices({{Kind::PastedIn, "Editor"}, {Kind::ClipboardFocusLost}}));
}

TEST_F(TextInserterTest, focusMovesBeforeTheFirstKey_typesNothing) {
    inserter.insert("abc", ResolvedMode::Typewriter, editorSnapshot);
    keys.focus("second");
    finishJobs();
    EXPECT_TRUE(keys.texts().empty());
    EXPECT_EQ(pasteboard.string(), "abc");
    EXPECT_EQ(shown, notices({{Kind::ClipboardFocusLost}}));
}

TEST_F(TextInserterTest, focusMovesAsSoonAsItHasBeenLookedAt_typesNothing) {
    workspace.onLookAtFront = [this] { keys.focus("second"); };
    inserter.insert("abc", ResolvedMode::Typewriter, editorSnapshot);
    finishJobs();
    EXPECT_TRUE(keys.texts().empty());
    EXPECT_EQ(pasteboard.string(), "abc");
    EXPECT_EQ(shown, notices({{Kind::ClipboardFocusLost}}));
}

TEST_F(TextInserterTest, focusMovesAsSoonAsTheApplicationIsSeenBack_typesNothing) {
    workspace.runInFront(browser);
    workspace.onActivate = [this](pid_t) { workspace.onLookAtFront = [this] { keys.focus("second"); }; };
    inserter.insert("abc", ResolvedMode::Typewriter, editorSnapshot);
    finishJobs();
    EXPECT_TRUE(keys.texts().empty());
    EXPECT_EQ(pasteboard.string(), "abc");
    EXPECT_EQ(shown, notices({{Kind::PastedIn, "Editor"}, {Kind::ClipboardFocusLost}}));
}

TEST_F(TextInserterTest, popUpOfTheSameApplication_doesNotStopTheTyping) {
    keys.onPost = [this](const test::PostedKeyEvent&) { keys.focus("first/completions"); };
    inserter.insert("abc", ResolvedMode::Typewriter, editorSnapshot);
    finishJobs();
    EXPECT_EQ(keys.text(), "abc");
    EXPECT_TRUE(shown.empty());
}

TEST_F(TextInserterTest, focusMovesWhileTypingWithoutProtection_isFollowed) {
    settings.protect = false;
    keys.onPost = [this](const test::PostedKeyEvent&) { keys.focus("second"); };
    inserter.insert("abc", ResolvedMode::Typewriter, editorSnapshot);
    finishJobs();
    EXPECT_EQ(keys.text(), "a");
    EXPECT_EQ(keys.text("second"), "bc");
    EXPECT_TRUE(pasteboard.history().isEmpty());
    EXPECT_TRUE(shown.empty());
}

TEST_F(TextInserterTest, keyboardCutOffWhileTyping_leavesTheWholeTextOnTheClipboard) {
    keys.onPost = [this](const test::PostedKeyEvent& event) {
        if (event.chunk == "b")
            keys.cutOff();
    };
    inserter.insert("abc", ResolvedMode::Typewriter, editorSnapshot);
    finishJobs();
    EXPECT_EQ(pasteboard.string(), "abc");
    EXPECT_EQ(shown, notices({{Kind::ClipboardNotPossible}}));
}

TEST_F(TextInserterTest, keyboardAndClipboardOutOfReach_isSaidPlainly) {
    keys.cutOff();
    pasteboard.refuse();
    inserter.insert("abc", ResolvedMode::Typewriter, editorSnapshot);
    finishJobs();
    EXPECT_EQ(shown, notices({{Kind::Undelivered}}));
}

TEST_F(TextInserterTest, copyThatTheClipboardRefuses_isTold) {
    pasteboard.refuse();
    workspace.quit(100);
    inserter.insert("abc", ResolvedMode::Paste, editorSnapshot);
    finishJobs();
    EXPECT_EQ(shown, notices({{Kind::ClipboardOriginalGone, "Editor"}, {Kind::Undelivered}}));
}

TEST_F(TextInserterTest, paste_writesTheClipboardAndStrikesTheChordOnceRightAway) {
    inserter.insert("long text", ResolvedMode::Paste, editorSnapshot);
    finishJobs();
    using Event = test::PostedKeyEvent;
    EXPECT_EQ(keys.events(), (QList<Event>{{Event::Kind::PasteChord, KeyPhase::Down, {}},
                                           {Event::Kind::PasteChord, KeyPhase::Up, {}}}));
    EXPECT_EQ(eventTimes, (std::vector<double>{0.0, 0.01}));
    EXPECT_EQ(pasteboard.string(), "long text") << "it stays there";
    EXPECT_EQ(keys.text(), "long text");
}

TEST_F(TextInserterTest, pasteChordThatCantBeMade_leavesTheTextOnTheClipboard) {
    keys.canPost = [](const test::PostedKeyEvent&) { return false; };
    inserter.insert("long text", ResolvedMode::Paste, editorSnapshot);
    finishJobs();
    EXPECT_TRUE(keys.events().isEmpty());
    EXPECT_EQ(pasteboard.string(), "long text");
    EXPECT_EQ(shown, notices({{Kind::ClipboardNotPossible}}));
}

TEST_F(TextInserterTest, focusMovesBeforeThePasteChord_pastesNothing) {
    inserter.insert("long text", ResolvedMode::Paste, editorSnapshot);
    keys.focus("second");
    finishJobs();
    EXPECT_TRUE(keys.events().isEmpty());
    EXPECT_EQ(pasteboard.string(), "long text");
    EXPECT_EQ(shown, notices({{Kind::ClipboardFocusLost}}));
}

TEST_F(TextInserterTest, pasteThatTheClipboardRefuses_isTypedInstead) {
    pasteboard.setString("somebody else's");
    pasteboard.refuse();
    inserter.insert("long text", ResolvedMode::Paste, editorSnapshot);
    finishJobs();
    EXPECT_EQ(keys.text(), "long text");
    EXPECT_TRUE(shown.empty());
}

TEST_F(TextInserterTest, typingThatWouldBeChangedOnItsWay_isPastedInstead) {
    keys.typesFaithfully = false;
    inserter.insert("short text", ResolvedMode::Typewriter, editorSnapshot);
    finishJobs();
    EXPECT_TRUE(keys.sessions().isEmpty());
    EXPECT_EQ(keys.text(), "short text");
    EXPECT_EQ(pasteboard.string(), "short text");
    EXPECT_TRUE(shown.empty());
}

TEST_F(TextInserterTest, clipboardTakenByAnotherProgramBeforeTheChord_isNotPasted) {
    pasteboard.beTakenBy("somebody else's");
    inserter.insert("long text", ResolvedMode::Paste, editorSnapshot);
    finishJobs();
    EXPECT_EQ(keys.text(), "long text") << "typed";
    EXPECT_TRUE(shown.empty());
}

TEST_F(TextInserterTest, pasteThatNobodyAsksFor_isToldAfterASecond) {
    keys.takesPastes = false;
    inserter.insert("long text", ResolvedMode::Paste, editorSnapshot);
    finishJobs();
    EXPECT_EQ(keys.text(), "");
    EXPECT_EQ(pasteboard.string(), "long text");
    EXPECT_EQ(shown, notices({{Kind::ClipboardNotTaken}}));
    EXPECT_NEAR(actor.elapsed(), 1.01, 0.05);
}

TEST_F(TextInserterTest, imageOnTheClipboardBeforeAPaste_isGoneAfterwards) {
    pasteboard.setImage();
    inserter.insert("text", ResolvedMode::Paste, editorSnapshot);
    finishJobs();
    EXPECT_EQ(pasteboard.string(), "text");
}

TEST_F(TextInserterTest, copyToClipboard_waitsBehindTypingAndStrikesNoKey) {
    inserter.insert("ab", ResolvedMode::Typewriter, editorSnapshot);
    inserter.copyToClipboard("copied");
    actor.advance(seconds(0.05));
    EXPECT_EQ(pasteboard.string(), std::nullopt);
    finishJobs();
    EXPECT_EQ(pasteboard.string(), "copied");
    EXPECT_EQ(keys.events().size(), 4);
}

TEST_F(TextInserterTest, copyToClipboard_ofNothingLeavesTheClipboardAlone) {
    pasteboard.setString("before");
    inserter.copyToClipboard("");
    finishJobs();
    EXPECT_EQ(pasteboard.string(), "before");
}

TEST_F(TextInserterTest, insert_returnsBeforeAnythingIsTyped) {
    inserter.insert("ab", ResolvedMode::Typewriter, editorSnapshot);
    EXPECT_TRUE(keys.events().isEmpty());
    finishJobs();
    EXPECT_EQ(keys.text(), "ab");
}

} // namespace
