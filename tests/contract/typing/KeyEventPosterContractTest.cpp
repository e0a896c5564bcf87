// SPDX-License-Identifier: MIT
//
// What delivery relies on when it posts keys and fills the clipboard, asked of the fakes that its tests use
// and of the real things in front of a real application.

#include "TypingTools.h"

#include "FakeKeyEventPoster.h"
#include "FakePasteboard.h"
#include "linux/x11/clipboard/X11Pasteboard.h"
#include "linux/x11/typing/X11KeyEventPoster.h"
#include "receivers/Receiver.h"

#include <gtest/gtest.h>

#include <optional>
#include <thread>
#include <vector>

using namespace talvera;
using namespace talvera::test;

namespace {

struct FakeDesk {
    FakePasteboard pasteboard;
    FakeKeyEventPoster poster{pasteboard};

    bool showsText(const QString& expected) { return poster.text() == expected; }
    QString text() const { return poster.text(); }
    bool keyboardIsAtRest() const { return poster.keysDown() == 0; }
    QString clipboard() { return pasteboard.string().value_or(QString()); }
    void putImageOnClipboard() { pasteboard.setImage(); }
    void openAnotherWindow() { poster.focus(QStringLiteral("second")); }
    QString textOfAnotherWindow() { return poster.text(QStringLiteral("second")); }
};

struct X11Desk {
    Receiver receiver{Receiver::Kind::Qt};
    X11Pasteboard pasteboard{console, TALVERA_X11_COMPANION, X11Server()};
    X11KeyEventPoster poster{X11Server()};

    bool showsText(const QString& expected) { return receiver.waitForText(expected); }
    QString text() const { return receiver.text(); }
    bool keyboardIsAtRest() const { return keyboardState().empty(); }
    QString clipboard() {
        const std::string read = "xclip -o -selection clipboard -t ";
        return QString::fromStdString(outputOf("{ " + read + "TARGETS | grep -qx UTF8_STRING && " + read +
                                               "UTF8_STRING; } 2>/dev/null"));
    }
    void putImageOnClipboard() {
        outputOf("printf '\\211PNG' | xclip -selection clipboard -t image/png -i >/dev/null 2>&1");
    }
    void openAnotherWindow() { second.emplace(Receiver::Kind::Terminal, QStringLiteral("second")); }
    QString textOfAnotherWindow() { return second->text(); }

    std::optional<Receiver> second;
};

} // namespace

template <typename Desk>
class KeyEventPosterContract : public ::testing::Test {
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

using Desks = ::testing::Types<FakeDesk, X11Desk>;

class DeskNames {
public:
    template <typename Desk>
    static std::string GetName(int) {
        return std::is_same_v<Desk, FakeDesk> ? "Fake" : "X11";
    }
};

TYPED_TEST_SUITE(KeyEventPosterContract, Desks, DeskNames);

TYPED_TEST(KeyEventPosterContract, chunksDownAndUp_arriveInOrder) {
    this->type({QStringLiteral("a  "), QStringLiteral("b"), QStringLiteral("b"), QStringLiteral("é"),
                QStringLiteral("e\u0301"), QStringLiteral("\U0001F600"), QStringLiteral("Я")});
    this->expectText(QStringLiteral("a  bbée\u0301\U0001F600Я."));
}

TYPED_TEST(KeyEventPosterContract, lineBreaksAndTabs_arrive) {
    this->type({QStringLiteral("a\n"), QStringLiteral("b\r\n"), QStringLiteral("c\t")});
    this->expectText(QStringLiteral("a\nb\nc\t."));
}

TYPED_TEST(KeyEventPosterContract, controlCharacters_areLeftOut) {
    this->type({QStringLiteral("a\u0001"), QStringLiteral("\u001b"), QStringLiteral("\u0008"), QString()});
    this->expectText(QStringLiteral("a."));
}

TYPED_TEST(KeyEventPosterContract, chunkThatIsNone_isRefused) {
    const auto session = this->desk.poster.beginTyping({QStringLiteral("a")}, nullptr);
    EXPECT_EQ(session->post(-1, KeyPhase::Down), PostResult::NotMakeable);
    EXPECT_EQ(session->post(1, KeyPhase::Down), PostResult::NotMakeable);
    EXPECT_EQ(session->post(1, KeyPhase::Up), PostResult::NotMakeable);
}

TYPED_TEST(KeyEventPosterContract, nothingToType_isFine) {
    EXPECT_NE(this->desk.poster.beginTyping({}, nullptr), nullptr);
    EXPECT_TRUE(this->desk.keyboardIsAtRest());
}

TYPED_TEST(KeyEventPosterContract, keyUpMissing_nextChunkArrivesAll_theSame) {
    const QStringList chunks{QStringLiteral("A"), QStringLiteral("a"), QStringLiteral(".")};
    const auto session = this->desk.poster.beginTyping(chunks, nullptr);
    for (qsizetype index = 0; index < chunks.size(); ++index) {
        EXPECT_EQ(session->post(index, KeyPhase::Down), PostResult::Posted);
    }
    this->expectText(QStringLiteral("Aa."));
}

TYPED_TEST(KeyEventPosterContract, sessionEndedWithAKeyDown_leavesNoneDown) {
    auto session = this->desk.poster.beginTyping({QStringLiteral("A")}, nullptr);
    session->post(0, KeyPhase::Down);
    EXPECT_FALSE(this->desk.keyboardIsAtRest());
    session.reset();
    EXPECT_TRUE(this->desk.keyboardIsAtRest());
}

TYPED_TEST(KeyEventPosterContract, focusMovesOn_nothingIsPostedThereWithATarget) {
    const QStringList chunks{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")};
    const auto session = this->desk.poster.beginTyping(chunks, this->desk.poster.focusedTarget());
    EXPECT_EQ(session->post(0, KeyPhase::Down), PostResult::Posted);
    EXPECT_EQ(session->post(0, KeyPhase::Up), PostResult::Posted);
    this->desk.openAnotherWindow();
    EXPECT_EQ(session->post(1, KeyPhase::Down), PostResult::TargetLost);
    EXPECT_EQ(session->post(2, KeyPhase::Down), PostResult::TargetLost);
    EXPECT_TRUE(this->desk.keyboardIsAtRest());
    this->expectText(QStringLiteral("a"));
    EXPECT_EQ(this->desk.textOfAnotherWindow(), QString());
}

TYPED_TEST(KeyEventPosterContract, oneSessionAfterAnother_textsStandInOrder) {
    this->type({QStringLiteral("я")});
    this->type({QStringLiteral("ж")});
    this->expectText(QStringLiteral("я.ж."));
}

TYPED_TEST(KeyEventPosterContract, preparedOnceOrMoreOften_changesNothing) {
    this->desk.poster.prepare();
    EXPECT_TRUE(this->desk.keyboardIsAtRest());
    this->type({QStringLiteral("a")});
    this->desk.poster.prepare();
    this->desk.poster.prepare();
    this->desk.pasteboard.setString(QStringLiteral("я"));
    EXPECT_EQ(this->desk.poster.postPaste(KeyPhase::Down, nullptr), PostResult::Posted);
    EXPECT_EQ(this->desk.poster.postPaste(KeyPhase::Up, nullptr), PostResult::Posted);
    this->desk.poster.prepare();
    this->type({QStringLiteral("b")});
    this->expectText(QStringLiteral("a.яb."));
    EXPECT_TRUE(this->desk.keyboardIsAtRest());
}

TYPED_TEST(KeyEventPosterContract, pasteChord_givesTheClipboard) {
    this->desk.pasteboard.setString(QStringLiteral("größer\n😀"));
    EXPECT_EQ(this->desk.poster.postPaste(KeyPhase::Down, nullptr), PostResult::Posted);
    EXPECT_FALSE(this->desk.keyboardIsAtRest());
    EXPECT_EQ(this->desk.poster.postPaste(KeyPhase::Up, nullptr), PostResult::Posted);
    EXPECT_TRUE(this->desk.keyboardIsAtRest());
    this->expectText(QStringLiteral("größer\n😀"));
}

TYPED_TEST(KeyEventPosterContract, clipboardWithoutText_pastesNothing) {
    this->desk.putImageOnClipboard();
    EXPECT_EQ(this->desk.poster.postPaste(KeyPhase::Down, nullptr), PostResult::Posted);
    EXPECT_EQ(this->desk.poster.postPaste(KeyPhase::Up, nullptr), PostResult::Posted);
    this->type({});
    this->expectText(QStringLiteral("."));
}

template <typename Desk>
class PasteboardContract : public KeyEventPosterContract<Desk> {};

TYPED_TEST_SUITE(PasteboardContract, Desks, DeskNames);

TYPED_TEST(PasteboardContract, text_isThereWhenTheCallReturns) {
    for (const QString& text :
         {QStringLiteral("one"), QStringLiteral("zwei — größer"), QStringLiteral("три\n😀")}) {
        this->desk.pasteboard.setString(text);
        EXPECT_EQ(this->desk.clipboard(), text);
    }
}

TYPED_TEST(PasteboardContract, emptyText_emptiesTheClipboard) {
    this->desk.pasteboard.setString(QStringLiteral("before"));
    this->desk.pasteboard.setString(QString());
    EXPECT_EQ(this->desk.clipboard(), QString());
}

TYPED_TEST(PasteboardContract, imageThatWasThere_isGone) {
    this->desk.putImageOnClipboard();
    EXPECT_EQ(this->desk.clipboard(), QString());
    this->desk.pasteboard.setString(QStringLiteral("text"));
    EXPECT_EQ(this->desk.clipboard(), QStringLiteral("text"));
    if constexpr (std::is_same_v<TypeParam, X11Desk>) {
        EXPECT_EQ(outputOf("xclip -o -selection clipboard -t TARGETS").find("image/png"), std::string::npos);
    }
}

TYPED_TEST(PasteboardContract, severalThreads_leaveOneOfTheTextsWhole) {
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
