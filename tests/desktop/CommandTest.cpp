// SPDX-License-Identifier: MIT
// The program as key bindings of a desktop start it, to have the one that runs do something.
#include "PanelTest.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

using namespace talvera::test;

namespace {

class Commands : public PanelTest {
protected:
    struct Outcome {
        int exitStatus = -1;
        QString output;
        QString errors;
    };

    /// Runs the program with these arguments to its end.
    Outcome command(const QStringList& arguments) const { return command(arguments, home.environment()); }
    static Outcome command(const QStringList& arguments, const QProcessEnvironment& environment) {
        QProcess process;
        process.setProcessEnvironment(environment);
        process.start(TALVERA_PROGRAM, arguments);
        if (!process.waitForFinished(120000) || process.exitStatus() != QProcess::NormalExit)
            throw std::runtime_error("a command doesn't end by itself");
        return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
                QString::fromUtf8(process.readAllStandardError())};
    }
    void expectDone(const QString& verb) const {
        const auto outcome = command({verb});
        EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors.toStdString();
        EXPECT_EQ(outcome.output + outcome.errors, "");
    }
    QJsonObject status() const {
        return QJsonDocument::fromJson(command({"status", "--json"}).output.toUtf8()).object();
    }
};

} // namespace

TEST_F(Commands, pressAndRelease_dictateIntoTheEditor) {
    startAgent();
    Receiver editor(Receiver::Kind::Gtk);
    expectDone("press");
    agent->await("menu recording");
    EXPECT_EQ(status()["state"].toString(), "recording");
    voice.sayAndWait(spoken("Good morning."));
    expectDone("release");
    EXPECT_TRUE(editor.waitForText("Good morning.")) << editor.text().toStdString();
    agent->await("menu idle");
    EXPECT_FALSE(command({"status"}).output.contains("morning"));
}

TEST_F(Commands, toggleTwice_dictatesIntoTheEditor) {
    startAgent();
    Receiver editor(Receiver::Kind::Gtk);
    expectDone("toggle");
    agent->await("menu recording");
    voice.sayAndWait(spoken("Good morning."));
    expectDone("toggle");
    EXPECT_TRUE(editor.waitForText("Good morning.")) << editor.text().toStdString();
    agent->await("menu idle");
}

TEST_F(Commands, releaseRightAfterThePress_leavesNoTrace) {
    startAgent();
    Receiver editor(Receiver::Kind::Gtk);
    expectDone("press");
    expectDone("release");
    // Whatever these have set off would come before or with this.
    holdAndSay(spoken("Good morning."));
    EXPECT_TRUE(editor.waitForText("Good morning.")) << editor.text().toStdString();
    agent->await("menu idle");
    EXPECT_EQ(agent->count("menu recording"), 1);
}

TEST_F(Commands, translate_switchesTheLanguage) {
    startAgent({{"lastTargetLanguageCode", "en"}});
    expectDone("translate");
    EXPECT_EQ(status()["targetLanguage"].toString(), "en");
    EXPECT_TRUE(becomes("targetLanguageCode", "en"));
    expectDone("translate");
    EXPECT_EQ(status()["targetLanguage"].toString(), "off");
}

TEST_F(Commands, panel_opens) {
    startAgent();
    expectDone("panel");
    EXPECT_TRUE(panelComes());
}

TEST_F(Commands, settings_openAtTheSectionAskedFor) {
    startAgent();
    EXPECT_EQ(command({"settings", "language"}).exitStatus, 0);
    EXPECT_TRUE(shown("page tab", "Language").is("selected"));
    EXPECT_EQ(command({"settings", "privacy"}).exitStatus, 0);
    shown("label", "No analytics, no accounts required.");
    expectDone("settings");
    EXPECT_TRUE(shown("page tab", "Privacy").is("selected"));
}

TEST_F(Commands, status_isToldInWordsAndAsJson) {
    startAgent();
    const auto told = status();
    EXPECT_EQ(told["state"].toString(), "idle");
    EXPECT_TRUE(told["ready"].toBool());
    EXPECT_EQ(told["hotkey"].toString(), "watching");
    EXPECT_EQ(told["spokenLanguage"].toString(), "auto");
    EXPECT_FALSE(told["version"].toString().isEmpty());
    const auto words = command({"status"});
    EXPECT_EQ(words.exitStatus, 0);
    EXPECT_TRUE(words.output.contains("Idle, ready to record")) << words.output.toStdString();
}

TEST_F(Commands, withoutAnAgent_sayThatInTheUsersLanguage) {
    home.setPreferences({});
    const auto outcome = command({"press"});
    EXPECT_EQ(outcome.exitStatus, 3);
    EXPECT_EQ(outcome.errors, "Talvera isn't running in this session.\n");
    home.setPreferences({{"appLanguage", "de"}});
    EXPECT_EQ(command({"press"}).errors, "Talvera läuft in dieser Sitzung nicht.\n");
}

TEST_F(Commands, ofAnotherSession_dontReachThisOne) {
    startAgent();
    auto environment = home.environment();
    environment.insert("DISPLAY", ":4711");
    EXPECT_EQ(command({"press"}, environment).exitStatus, 3);
}

TEST_F(Commands, afterTheAgentWasKilled_sayThatNoneRuns) {
    startAgent();
    agent->kill();
    EXPECT_EQ(command({"press"}).exitStatus, 3);
    startAgentAgain();
    EXPECT_EQ(status()["state"].toString(), "idle");
}

TEST_F(Commands, unknownOne_isAnErrorWhetherAnAgentRunsOrNot) {
    home.setPreferences({});
    for (const QStringList& arguments :
         {QStringList{"dictate"}, QStringList{"press", "twice"}, QStringList{"settings", "nonsense"}}) {
        const auto outcome = command(arguments);
        EXPECT_EQ(outcome.exitStatus, 2);
        EXPECT_TRUE(outcome.errors.contains(arguments.join(u' '))) << outcome.errors.toStdString();
        EXPECT_EQ(outcome.output, "");
    }
}

TEST_F(Commands, help_namesThemAllWithoutADesktop) {
    home.setPreferences({});
    auto environment = home.environment();
    environment.remove("DISPLAY");
    const auto help = command({"--help"}, environment);
    EXPECT_EQ(help.exitStatus, 0) << help.errors.toStdString();
    for (const auto* verb : {"press", "release", "toggle", "translate", "panel", "settings [SECTION]",
                             "status [--json]", "--settings [SECTION]"})
        EXPECT_TRUE(help.output.contains(verb)) << verb;
    EXPECT_EQ(command({"--version"}, environment).output.section(u' ', 0, 0), "Talvera");
}
