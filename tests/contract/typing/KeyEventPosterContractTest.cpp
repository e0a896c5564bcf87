// SPDX-License-Identifier: MIT
// What every keyboard and clipboard promises, asked of the fakes and of those of an X11 session.
#include "KeyEventPosterContract.h"
#include "TypingTools.h"

#include "FakeKeyEventPoster.h"
#include "FakePasteboard.h"
#include "linux/x11/clipboard/X11Pasteboard.h"
#include "linux/x11/typing/X11KeyEventPoster.h"
#include "receivers/Receiver.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <type_traits>

namespace talvera::test {

namespace {

struct FakeDesk {
    FakePasteboard pasteboard;
    FakeKeyEventPoster poster{pasteboard};

    bool showsText(const QString& expected) { return poster.text() == expected; }
    QString text() const { return poster.text(); }
    bool hasKeysDown() const { return poster.keysDown() > 0; }
    bool isAtRest() const { return poster.keysDown() == 0; }
    bool offersImage() { return !pasteboard.string(); }
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
    bool hasKeysDown() const { return !keyboardState().empty(); }
    bool isAtRest() const { return keyboardState().empty(); }
    bool offersImage() {
        return outputOf("xclip -o -selection clipboard -t TARGETS").find("image/png") != std::string::npos;
    }
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

using Desks = testing::Types<FakeDesk, X11Desk>;

class DeskNames {
public:
    template <typename Desk>
    static std::string GetName(int) {
        return std::is_same_v<Desk, FakeDesk> ? "Fake" : "X11";
    }
};

INSTANTIATE_TYPED_TEST_SUITE_P(On, KeyEventPosterContract, Desks, DeskNames);
INSTANTIATE_TYPED_TEST_SUITE_P(On, PasteboardContract, Desks, DeskNames);

} // namespace

} // namespace talvera::test
