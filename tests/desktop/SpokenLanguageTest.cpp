// SPDX-License-Identifier: MIT
// Which language is spoken, which one is wanted, and what isn't meant as words.
#include "DesktopTest.h"

#include <QRegularExpression>

using namespace talvera::test;

namespace {

class SpokenLanguage : public DesktopTest {
protected:
    void expect(const QString& text, const Samples& speech, const QJsonObject& preferences) {
        startAgent(preferences);
        Receiver editor(Receiver::Kind::Gtk);
        holdAndSay(speech);
        EXPECT_TRUE(editor.waitForText(text)) << editor.text().toStdString();
        agent->await("menu idle");
    }
};

} // namespace

TEST_F(SpokenLanguage, german_isWrittenInGerman) {
    expect("Das Wetter ist heute schön.", spoken("Das Wetter ist heute schön.", "de"),
           {{"sourceLanguageCode", "de"}});
}

TEST_F(SpokenLanguage, germanForEnglish_isTranslatedByTheRecogniser) {
    expect("The weather is good today.", spoken("Das Wetter ist heute schön.", "de"),
           {{"sourceLanguageCode", "de"}, {"targetLanguageCode", "en"}});
}

TEST_F(SpokenLanguage, russianThatNobodyAnnounced_isFoundOut) {
    expect("Пожалуйста, отправьте отчёт.", spoken("Пожалуйста, отправьте отчёт.", "ru"), {});
}

TEST_F(SpokenLanguage, newLine_breaksTheLine) {
    startAgent({{"sourceLanguageCode", "en"}});
    Receiver editor(Receiver::Kind::Gtk);
    // No sensible sentence, but one of few behind whose command the tiny model writes no mark.
    holdAndSay(spoken("Tuesday new line starts at nine today"));
    const QRegularExpression twoLines("^Tuesday \\n\\w.*\\.$");
    EXPECT_TRUE(editor.waitFor([&](const QString& text) { return twoLines.match(text).hasMatch(); }))
        << editor.text().toStdString();
    agent->await("menu idle");
}

TEST_F(SpokenLanguage, newLineBeforeAMark_isTakenBackByIt) {
    expect("Dear Anna, thank you for the letter.", spoken("Dear Anna, new line, thank you for the letter."),
           {{"sourceLanguageCode", "en"}});
}

TEST_F(SpokenLanguage, silence_writesNothingAndSaysNothing) {
    startAgent();
    const Receiver editor(Receiver::Kind::Gtk);
    holdAndSay(Samples(16000));
    agent->await("menu idle");
    agent->await("hud hidden");
    EXPECT_EQ(editor.text(), "");
}
