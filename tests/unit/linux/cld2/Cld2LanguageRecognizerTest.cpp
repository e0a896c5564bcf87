// SPDX-License-Identifier: MIT
#include "linux/cld2/Cld2LanguageRecognizer.h"

#include <gtest/gtest.h>

using namespace talvera;

namespace {

std::string languageOf(const char* utf8) {
    return Cld2LanguageRecognizer()
        .dominantLanguage(QString::fromUtf8(utf8))
        .value_or(QStringLiteral("none"))
        .toStdString();
}

TEST(Cld2LanguageRecognizer, sentence_isToldByItsTwoLetterCode) {
    EXPECT_EQ(languageOf("Please call me tomorrow at nine."), "en");
    EXPECT_EQ(languageOf("Schick mir bitte die Datei."), "de");
    EXPECT_EQ(languageOf("Envoie-moi le fichier."), "fr");
    EXPECT_EQ(languageOf("Mándame el archivo."), "es");
    EXPECT_EQ(languageOf("Wyślij mi plik, proszę."), "pl");
    EXPECT_EQ(languageOf("Пришли мне файл."), "ru");
    EXPECT_EQ(languageOf("Надішли мені файл, будь ласка."), "uk");
    EXPECT_EQ(languageOf("ファイルを送ってください。"), "ja");
    EXPECT_EQ(languageOf("파일을 보내 주세요."), "ko");
    EXPECT_EQ(languageOf("أرسل لي الملف من فضلك."), "ar");
    EXPECT_EQ(languageOf("मुझे फ़ाइल भेजो।"), "hi");
}

TEST(Cld2LanguageRecognizer, hebrew_hasItsCodeOfToday) {
    EXPECT_EQ(languageOf("שלום, מה שלומך היום?"), "he");
}

TEST(Cld2LanguageRecognizer, bothScriptsOfChinese_areChinese) {
    EXPECT_EQ(languageOf("你好，请把文件发给我。"), "zh");
    EXPECT_EQ(languageOf("請把檔案傳給我，謝謝。"), "zh");
}

TEST(Cld2LanguageRecognizer, mixedText_isInTheLanguageOfItsLargerPart) {
    EXPECT_EQ(languageOf("Ship the release on Friday and tell the German team, bitte."), "en");
}

TEST(Cld2LanguageRecognizer, textThatTellsNothing_givesNothing) {
    for (const auto* text : {"", " \n", "12345", "!?…", "👍🏽", "Ja.", "asdf qwer zxcv"})
        EXPECT_EQ(languageOf(text), "none") << text;
}

TEST(Cld2LanguageRecognizer, brokenOrHugeText_isNoDanger) {
    const QString halfACharacter(QChar(0xD83D));
    EXPECT_EQ(Cld2LanguageRecognizer().dominantLanguage(halfACharacter), std::nullopt);
    EXPECT_EQ(Cld2LanguageRecognizer().dominantLanguage(QString(5'000'000, u'\0')), std::nullopt);
    EXPECT_EQ(
        languageOf(QByteArray("The quick brown fox jumps over the lazy dog. ").repeated(50'000).constData()),
        "en");
}

} // namespace
