// SPDX-License-Identifier: MIT
#include "DeliveryFixture.h"

using namespace talvera;
using Kind = FocusNotice::Kind;

namespace {

class StreamTest : public test::DeliveryFixture {
protected:
    TextInserter::Stream stream(ResolvedMode mode) {
        return {inserter, mode, editorSnapshot, collectHandedOver};
    }
};

TEST_F(StreamTest, typewriterParts_areTypedAsTheyCome) {
    auto parts = stream(ResolvedMode::Typewriter);
    parts.append("one ");
    EXPECT_EQ(parts.decision(), RouteDecision::Direct);
    actor.advance(seconds(1));
    EXPECT_EQ(keys.text(), "one ");
    parts.append("two");
    actor.advance(seconds(1));
    EXPECT_EQ(keys.text(), "one two");
    parts.finish();
    finishJobs();
    EXPECT_EQ(keys.text(), "one two");
    EXPECT_EQ(parts.accumulated(), "one two");
    EXPECT_TRUE(pasteboard.history().isEmpty());
}

TEST_F(StreamTest, typewriterParts_areRoutedOnceWithTheFirst) {
    auto parts = stream(ResolvedMode::Typewriter);
    parts.append("one ");
    workspace.runInFront(browser);
    parts.append("two");
    parts.finish();
    finishJobs();
    EXPECT_EQ(keys.text(), "one two") << "the application is not looked for again";
    EXPECT_TRUE(workspace.activations.empty());
    EXPECT_TRUE(shown.empty());
}

TEST_F(StreamTest, focusLostBetweenParts_typesNoMoreAndLeavesAllPartsOnTheClipboard) {
    auto parts = stream(ResolvedMode::Typewriter);
    parts.append("one ");
    actor.advance(seconds(1));
    keys.focus("second");
    parts.append("two ");
    actor.advance(seconds(1));
    EXPECT_EQ(pasteboard.string(), "one two ");
    keys.focus("first");
    parts.append("three");
    parts.finish();
    finishJobs();
    EXPECT_EQ(keys.text(), "one ") << "what has stopped doesn't go on in the middle";
    EXPECT_EQ(keys.text("second"), "");
    EXPECT_EQ(pasteboard.string(), "one two three");
    EXPECT_EQ(shown, notices({{Kind::ClipboardFocusLost}})) << "told once";
}

TEST_F(StreamTest, strokeThatCantBeMadeInAPart_leavesAllPartsOnTheClipboardAndTellsOnce) {
    keys.canPost = [](const test::PostedKeyEvent& event) { return event.chunk != "b"; };
    auto parts = stream(ResolvedMode::Typewriter);
    for (const char* part : {"a", "bc", "d", "b"})
        parts.append(part);
    parts.finish();
    finishJobs();
    EXPECT_EQ(keys.text(), "ac");
    EXPECT_EQ(pasteboard.string(), "abcdb");
    EXPECT_EQ(shown, notices({{Kind::ClipboardNotPossible}}));
    EXPECT_TRUE(handedOver.empty());
}

TEST_F(StreamTest, laterPartThatIsPastedAndNotTaken_leavesAllPartsOnTheClipboard) {
    keys.typesFaithfully = false;
    auto parts = stream(ResolvedMode::Typewriter);
    parts.append("one ");
    actor.advance(seconds(2));
    EXPECT_EQ(keys.text(), "one ");
    keys.takesPastes = false;
    parts.append("two ");
    actor.advance(seconds(2));
    EXPECT_EQ(pasteboard.string(), "one two ");
    keys.takesPastes = true;
    parts.append("three");
    parts.finish();
    finishJobs();
    EXPECT_EQ(keys.text(), "one ");
    EXPECT_EQ(pasteboard.string(), "one two three");
    EXPECT_EQ(shown, notices({{Kind::ClipboardNotTaken}}));
}

TEST_F(StreamTest, typewriterStreamWithLostFocus_typesNothingCopiesTheWholeAndTellsOnce) {
    workspace.quit(100);
    auto parts = stream(ResolvedMode::Typewriter);
    parts.append("one ");
    parts.append("two ");
    parts.append("three");
    EXPECT_EQ(parts.decision(), RouteDecision::Clipboard);
    parts.finish();
    finishJobs();
    EXPECT_TRUE(keys.events().isEmpty());
    EXPECT_EQ(pasteboard.string(), "one two three");
    EXPECT_EQ(shown, notices({{Kind::ClipboardOriginalGone, "Editor"}})) << "straight to the HUD";
    EXPECT_TRUE(handedOver.empty());
}

TEST_F(StreamTest, typewriterStreamWithoutText_doesNothingAtAll) {
    workspace.quit(100);
    auto parts = stream(ResolvedMode::Typewriter);
    parts.append("");
    parts.finish();
    finishJobs();
    EXPECT_EQ(parts.decision(), std::nullopt);
    EXPECT_TRUE(pasteboard.history().isEmpty());
    EXPECT_TRUE(shown.empty());
    EXPECT_TRUE(handedOver.empty());
}

TEST_F(StreamTest, emptyFirstPart_doesNotRoute) {
    auto parts = stream(ResolvedMode::Typewriter);
    parts.append("");
    EXPECT_EQ(parts.decision(), std::nullopt);
    parts.append("text");
    EXPECT_EQ(parts.decision(), RouteDecision::Direct);
}

TEST_F(StreamTest, pasteStream_deliversNothingBeforeItIsFinished) {
    auto parts = stream(ResolvedMode::Paste);
    parts.append("one ");
    parts.append("two");
    actor.advance(seconds(5));
    EXPECT_EQ(parts.decision(), std::nullopt);
    EXPECT_TRUE(keys.events().isEmpty());
    EXPECT_TRUE(pasteboard.history().isEmpty());
    parts.finish();
    finishJobs();
    EXPECT_EQ(parts.decision(), RouteDecision::Direct);
    EXPECT_EQ(keys.text(), "one two");
    EXPECT_EQ(pasteboard.history(), QStringList{"one two"});
}

TEST_F(StreamTest, pasteStream_handsItsNoticeOver) {
    workspace.quit(100);
    auto parts = stream(ResolvedMode::Paste);
    parts.append("text");
    parts.finish();
    EXPECT_EQ(parts.decision(), RouteDecision::Clipboard);
    EXPECT_EQ(handedOver, notices({{Kind::ClipboardOriginalGone, "Editor"}}));
    EXPECT_TRUE(shown.empty());
}

TEST_F(StreamTest, pasteStreamWithoutText_doesNothingAtAll) {
    auto parts = stream(ResolvedMode::Paste);
    parts.finish();
    finishJobs();
    EXPECT_EQ(parts.decision(), std::nullopt);
    EXPECT_TRUE(keys.events().isEmpty());
}

TEST_F(StreamTest, abandonedPasteStream_deliversNothing) {
    {
        auto parts = stream(ResolvedMode::Paste);
        parts.append("lost");
    }
    finishJobs();
    EXPECT_TRUE(keys.events().isEmpty());
    EXPECT_TRUE(pasteboard.history().isEmpty());
}

TEST_F(StreamTest, endedStream_leavesItsTypingToTheQueue) {
    {
        auto parts = stream(ResolvedMode::Typewriter);
        parts.append("still ");
        parts.append("typed");
    }
    finishJobs();
    EXPECT_EQ(keys.text(), "still typed");
}

} // namespace
