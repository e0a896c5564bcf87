// SPDX-License-Identifier: MIT
// What happens while the language model still writes.
#include "DesktopTest.h"
#include "InstalledCopy.h"

#include <QDirIterator>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

#include <csignal>
#include <stdexcept>

using namespace talvera::test;

namespace {

/// With a model that writes what a test says, when it says so.
class ModelInMidAnswer : public DesktopTest {
protected:
    static constexpr int heldBack = 20; ///< characters that could become a mark
    const QString sentence = "Please send the report tomorrow.";
    const QStringList words{"We meet at five on Monday. ", "Then we talk ", "about the letter ",
                            "and the report, ", "and about Anna."};
    const QJsonValue gate;

    ModelInMidAnswer() { copy.replace("llama-server", TALVERA_SCRIPTED_LLAMA_SERVER); }

    void writeScript(const QJsonObject& line) {
        home.addLanguageModel();
        QFile script(home.languageModel() + ".script");
        if (!script.open(QIODevice::WriteOnly) ||
            script.write(QJsonDocument(line).toJson(QJsonDocument::Compact)) < 0)
            throw std::runtime_error("no script for the model");
    }
    /// Dictates with a model that writes these pieces, where a gate is none of them, and ends so.
    void dictate(const QJsonArray& pieces, const QJsonValue& end = {}, const QJsonObject& preferences = {}) {
        writeScript({{"pieces", pieces}, {"failure", end}, {"unlogged", true}});
        auto all = preferences;
        all.insert("aiCleanupEnabled", true);
        all.insert("cleanupTone", "conversational");
        all.insert("sourceLanguageCode", "en");
        startAgent(all, copy.program());
        editor.emplace(Receiver::Kind::Gtk, "the editor");
        holdAndSay(spoken(sentence));
    }
    /// Lets the model go on where it waits: at the first gate, or at this one.
    void open(int gates = 1) const {
        QFile file(home.languageModel() + QString(".gate").repeated(gates));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    }
    bool isTyped(const QString& text) { return editor->waitForText(text); }
    void expectBrokenOff() {
        EXPECT_EQ(agent->await("hud notice"), "hud notice The language model's answer broke off warn");
        agent->await("menu idle");
    }
    static void killServer() {
        const auto servers = processes("llama-server");
        ASSERT_EQ(servers.size(), 1);
        ::kill(servers.front(), SIGKILL);
    }

    /// What the model has been told, which is removed with this.
    static QByteArray takePrompt() {
        QDirIterator each(qEnvironmentVariable("XDG_RUNTIME_DIR") + "/talvera", {"requests.jsonl"},
                          QDir::Files, QDirIterator::Subdirectories);
        QFile file(each.next());
        if (!file.open(QIODevice::ReadOnly))
            throw std::runtime_error("the model has been told nothing");
        const auto last = QJsonDocument::fromJson(file.readAll().trimmed().split('\n').constLast()).object();
        file.remove();
        return last["messages"].toArray().last().toObject()["content"].toString().toUtf8();
    }

    InstalledCopy copy;
    std::optional<Receiver> editor;
};

} // namespace

TEST_F(ModelInMidAnswer, serverThatDiesBeforeTheFirstPart_leavesTheTranscript) {
    dictate({}, "dies");
    EXPECT_TRUE(isTyped(sentence)) << editor->text().toStdString();
    expectBrokenOff();
}

TEST_F(ModelInMidAnswer, serverKilledAtTheFirstPart_leavesThatPart) {
    dictate({words[0], gate});
    const auto first = words[0].chopped(heldBack);
    EXPECT_TRUE(isTyped(first)) << editor->text().toStdString();
    killServer();
    expectBrokenOff();
    EXPECT_EQ(editor->text(), first);
}

TEST_F(ModelInMidAnswer, serverKilledAfterTheFifthPart_leavesAllFive) {
    QJsonArray pieces;
    for (const auto& word : words) {
        pieces << word << gate;
    }
    dictate(pieces);
    QString written;
    for (int part = 0; part < words.size(); ++part) {
        if (part > 0)
            open(part);
        written += words[part];
        EXPECT_TRUE(isTyped(written.chopped(heldBack))) << editor->text().toStdString();
    }
    killServer();
    expectBrokenOff();
    EXPECT_EQ(editor->text(), written.chopped(heldBack));
}

TEST_F(ModelInMidAnswer, serverThatDiesWhereAllIsPasted_leavesNothing) {
    dictate({words[0], words[1]}, "dies", {{"insertionMode", "paste"}});
    expectBrokenOff();
    EXPECT_EQ(editor->text(), "");
}

TEST_F(ModelInMidAnswer, windowLeftMeanwhile_getsNoMoreAndAllIsOnTheClipboard) {
    dictate({words[0], gate, words[1]});
    const auto first = words[0].chopped(heldBack);
    EXPECT_TRUE(isTyped(first)) << editor->text().toStdString();
    Receiver other(Receiver::Kind::Qt, "the other window");
    open();
    agent->await("hud notice Focus changed — the whole text is on the clipboard.");
    EXPECT_TRUE(clipboardBecomes(words[0] + words[1]));
    EXPECT_EQ(editor->text(), first);
    EXPECT_EQ(other.text(), "");
}

TEST_F(ModelInMidAnswer, languageThatTheModelRefuses_isToldInEnglish) {
    writeScript({{"pieces", QJsonArray{words[0]}}, {"failure", {}}});
    startAgent({{"targetLanguageCode", "de"}, {"sourceLanguageCode", "ru"}}, copy.program());
    editor.emplace(Receiver::Kind::Gtk, "the editor");
    holdAndSay(spoken("Пожалуйста, отправьте отчёт.", "ru"));
    EXPECT_TRUE(isTyped(words[0])) << editor->text().toStdString();
    EXPECT_EQ(takePrompt(), "<raw>Please send the report.</raw>");
    agent->await("menu idle");
}

TEST_F(ModelInMidAnswer, nextDictation_getsAServerOfItsOwn) {
    dictate({words[0], gate});
    EXPECT_TRUE(isTyped(words[0].chopped(heldBack)));
    killServer();
    expectBrokenOff();
    open();
    editor.emplace(Receiver::Kind::Gtk, "the next editor");
    holdAndSay(spoken(sentence));
    EXPECT_TRUE(isTyped(words[0])) << editor->text().toStdString();
    agent->await("menu idle");
}
