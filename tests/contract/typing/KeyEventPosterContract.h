// SPDX-License-Identifier: MIT
#pragma once

#include "platform/keyboard/KeyEventPoster.h"

#include <QString>
#include <QStringList>

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace talvera::test {

/// What delivery relies on when it posts keys and fills the clipboard, of the fakes that its tests use and of
/// the real things in front of a real application alike. A `Desk` has a `poster` and a `pasteboard`, an
/// application with a text field in focus, and tells what that shows and what is on the clipboard; one whose
/// text comes otherwise than by keys says `writesWithoutKeys`.
template <typename Desk>
class KeyEventPosterContract : public testing::Test {
protected:
    /// Types `chunks`, then a full stop, behind which nothing more can come.
    void type(QStringList chunks) {
        chunks.append(QStringLiteral("."));
        const auto session = desk.poster.beginTyping(chunks, nullptr);
        for (qsizetype index = 0; index < chunks.size(); ++index) {
            EXPECT_EQ(session->post(index, KeyPhase::Down), PostResult::Posted);
            EXPECT_EQ(session->post(index, KeyPhase::Up), PostResult::Posted);
        }
    }

    void expectText(const QString& expected) {
        EXPECT_TRUE(desk.showsText(expected)) << desk.text().toStdString();
    }

    Desk desk;
};

TYPED_TEST_SUITE_P(KeyEventPosterContract);

TYPED_TEST_P(KeyEventPosterContract, chunksDownAndUp_arriveInOrder) {
    this->type({QStringLiteral("a  "), QStringLiteral("b"), QStringLiteral("b"), QStringLiteral("é"),
                QStringLiteral("e\u0301"), QStringLiteral("\U0001F600"), QStringLiteral("Я")});
    this->expectText(QStringLiteral("a  bbée\u0301\U0001F600Я."));
}

TYPED_TEST_P(KeyEventPosterContract, lineBreaksAndTabs_arrive) {
    this->type({QStringLiteral("a\n"), QStringLiteral("b\r\n"), QStringLiteral("c\t")});
    this->expectText(QStringLiteral("a\nb\nc\t."));
}

TYPED_TEST_P(KeyEventPosterContract, controlCharacters_areLeftOut) {
    this->type({QStringLiteral("a\u0001"), QStringLiteral("\u001b"), QStringLiteral("\u0008"), QString()});
    this->expectText(QStringLiteral("a."));
}

TYPED_TEST_P(KeyEventPosterContract, chunkThatIsNone_isRefused) {
    const auto session = this->desk.poster.beginTyping({QStringLiteral("a")}, nullptr);
    EXPECT_EQ(session->post(-1, KeyPhase::Down), PostResult::NotMakeable);
    EXPECT_EQ(session->post(1, KeyPhase::Down), PostResult::NotMakeable);
    EXPECT_EQ(session->post(1, KeyPhase::Up), PostResult::NotMakeable);
}

TYPED_TEST_P(KeyEventPosterContract, nothingToType_isFine) {
    EXPECT_NE(this->desk.poster.beginTyping({}, nullptr), nullptr);
    EXPECT_TRUE(this->desk.isAtRest());
}

TYPED_TEST_P(KeyEventPosterContract, keyUpMissing_nextChunkArrivesAll_theSame) {
    const QStringList chunks{QStringLiteral("A"), QStringLiteral("a"), QStringLiteral(".")};
    const auto session = this->desk.poster.beginTyping(chunks, nullptr);
    for (qsizetype index = 0; index < chunks.size(); ++index) {
        EXPECT_EQ(session->post(index, KeyPhase::Down), PostResult::Posted);
    }
    this->expectText(QStringLiteral("Aa."));
}

TYPED_TEST_P(KeyEventPosterContract, sessionEndedWithAKeyDown_leavesNoneDown) {
    auto session = this->desk.poster.beginTyping({QStringLiteral("A")}, nullptr);
    session->post(0, KeyPhase::Down);
    if constexpr (!requires { TypeParam::writesWithoutKeys; }) {
        EXPECT_TRUE(this->desk.hasKeysDown());
    }
    session.reset();
    EXPECT_TRUE(this->desk.isAtRest());
}

TYPED_TEST_P(KeyEventPosterContract, focusMovesOn_nothingIsPostedThereWithATarget) {
    const QStringList chunks{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")};
    const auto session = this->desk.poster.beginTyping(chunks, this->desk.poster.focusedTarget());
    EXPECT_EQ(session->post(0, KeyPhase::Down), PostResult::Posted);
    EXPECT_EQ(session->post(0, KeyPhase::Up), PostResult::Posted);
    this->desk.openAnotherWindow();
    EXPECT_EQ(session->post(1, KeyPhase::Down), PostResult::TargetLost);
    EXPECT_EQ(session->post(2, KeyPhase::Down), PostResult::TargetLost);
    EXPECT_TRUE(this->desk.isAtRest());
    this->expectText(QStringLiteral("a"));
    EXPECT_EQ(this->desk.textOfAnotherWindow(), QString());
}

TYPED_TEST_P(KeyEventPosterContract, oneSessionAfterAnother_textsStandInOrder) {
    this->type({QStringLiteral("я")});
    this->type({QStringLiteral("ж")});
    this->expectText(QStringLiteral("я.ж."));
}

TYPED_TEST_P(KeyEventPosterContract, preparedOnceOrMoreOften_changesNothing) {
    this->desk.poster.prepare();
    EXPECT_TRUE(this->desk.isAtRest());
    this->type({QStringLiteral("a")});
    this->desk.poster.prepare();
    this->desk.poster.prepare();
    this->desk.pasteboard.setString(QStringLiteral("я"));
    EXPECT_EQ(this->desk.poster.postPaste(KeyPhase::Down, nullptr), PostResult::Posted);
    EXPECT_EQ(this->desk.poster.postPaste(KeyPhase::Up, nullptr), PostResult::Posted);
    this->expectText(QStringLiteral("a.я")); // what is pasted comes when the owner has given it
    this->desk.poster.prepare();
    this->type({QStringLiteral("b")});
    this->expectText(QStringLiteral("a.яb."));
    EXPECT_TRUE(this->desk.isAtRest());
}

TYPED_TEST_P(KeyEventPosterContract, pasteChord_givesTheClipboard) {
    this->desk.pasteboard.setString(QStringLiteral("größer\n😀"));
    EXPECT_EQ(this->desk.poster.postPaste(KeyPhase::Down, nullptr), PostResult::Posted);
    EXPECT_TRUE(this->desk.hasKeysDown());
    EXPECT_EQ(this->desk.poster.postPaste(KeyPhase::Up, nullptr), PostResult::Posted);
    EXPECT_TRUE(this->desk.isAtRest());
    this->expectText(QStringLiteral("größer\n😀"));
}

TYPED_TEST_P(KeyEventPosterContract, clipboardWithoutText_pastesNothing) {
    this->desk.putImageOnClipboard();
    EXPECT_EQ(this->desk.poster.postPaste(KeyPhase::Down, nullptr), PostResult::Posted);
    EXPECT_EQ(this->desk.poster.postPaste(KeyPhase::Up, nullptr), PostResult::Posted);
    this->type({});
    this->expectText(QStringLiteral("."));
}

REGISTER_TYPED_TEST_SUITE_P(KeyEventPosterContract, chunksDownAndUp_arriveInOrder, lineBreaksAndTabs_arrive,
                            controlCharacters_areLeftOut, chunkThatIsNone_isRefused, nothingToType_isFine,
                            keyUpMissing_nextChunkArrivesAll_theSame, sessionEndedWithAKeyDown_leavesNoneDown,
                            focusMovesOn_nothingIsPostedThereWithATarget,
                            oneSessionAfterAnother_textsStandInOrder, preparedOnceOrMoreOften_changesNothing,
                            pasteChord_givesTheClipboard, clipboardWithoutText_pastesNothing);

template <typename Desk>
class PasteboardContract : public KeyEventPosterContract<Desk> {};

TYPED_TEST_SUITE_P(PasteboardContract);

TYPED_TEST_P(PasteboardContract, text_isThereWhenTheCallReturns) {
    for (const QString& text :
         {QStringLiteral("one"), QStringLiteral("zwei — größer"), QStringLiteral("три\n😀")}) {
        this->desk.pasteboard.setString(text);
        EXPECT_EQ(this->desk.clipboard(), text);
    }
}

TYPED_TEST_P(PasteboardContract, emptyText_emptiesTheClipboard) {
    this->desk.pasteboard.setString(QStringLiteral("before"));
    this->desk.pasteboard.setString(QString());
    EXPECT_EQ(this->desk.clipboard(), QString());
}

TYPED_TEST_P(PasteboardContract, imageThatWasThere_isGone) {
    this->desk.putImageOnClipboard();
    EXPECT_EQ(this->desk.clipboard(), QString());
    this->desk.pasteboard.setString(QStringLiteral("text"));
    EXPECT_EQ(this->desk.clipboard(), QStringLiteral("text"));
    EXPECT_FALSE(this->desk.offersImage());
}

TYPED_TEST_P(PasteboardContract, severalThreads_leaveOneOfTheTextsWhole) {
    std::vector<std::thread> threads;
    QStringList texts;
    for (int number = 0; number < 4; ++number) {
        texts.append(QStringLiteral("text %1").arg(number));
    }
    for (const QString& text : texts) {
        threads.emplace_back([this, text] { this->desk.pasteboard.setString(text); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_TRUE(texts.contains(this->desk.clipboard())) << this->desk.clipboard().toStdString();
}

REGISTER_TYPED_TEST_SUITE_P(PasteboardContract, text_isThereWhenTheCallReturns, emptyText_emptiesTheClipboard,
                            imageThatWasThere_isGone, severalThreads_leaveOneOfTheTextsWhole);

} // namespace talvera::test
