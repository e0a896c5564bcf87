// SPDX-License-Identifier: MIT
// Starts, ends and deaths: of the agent, and of the recogniser under it.
#include "DesktopTest.h"
#include "RecogniserGate.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <csignal>
#include <random>
#include <stdexcept>

#include <sys/resource.h>

using namespace talvera::test;

namespace {

using Clock = std::chrono::steady_clock;

/// An X server beside the desktop's, as of another session of the same user.
class OtherDisplay {
public:
    OtherDisplay() {
        m_server.setProgram("Xvfb");
        m_server.setArguments(
            {"-displayfd", "1", "-screen", "0", "640x480x24", "-ac", "-noreset", "-nolisten", "tcp"});
        m_server.start();
        while (!m_server.canReadLine()) {
            if (!m_server.waitForReadyRead())
                throw std::runtime_error("Xvfb does not start");
        }
        m_name = ":" + QString::fromLatin1(m_server.readLine()).trimmed();
    }
    ~OtherDisplay() {
        m_server.kill();
        m_server.waitForFinished();
    }

    const QString& name() const { return m_name; }

private:
    QProcess m_server;
    QString m_name;
};

class AgentLife : public DesktopTest {
protected:
    void dictateInto(Receiver& editor) {
        const QString before = editor.text();
        holdAndSay(spoken("Good morning."));
        EXPECT_TRUE(editor.waitForText(before + "Good morning.")) << editor.text().toStdString();
        agent->await("menu idle");
    }

    void expectNoRecogniserIsLeft() {
        EXPECT_TRUE(eventually([] { return recognisers().empty(); }));
    }

    /// Once the launch's own run of the recogniser is over, so that one that is seen is a recording's.
    void startWarmAgent() {
        home.setPreferences({});
        agent.emplace(home);
        agent->awaitLine("[warmup] whisper ready in ");
        if (agent->count("microphone authorized") == 0)
            agent->await("microphone authorized");
        agent->awaitRest();
    }

    /// With a recogniser that waits for what is said.
    void beginRecording() {
        ASSERT_EQ(recognisers().size(), 0U);
        keys.press(hotkey);
        agent->await("menu recording");
        ASSERT_TRUE(eventually([] { return recognisers().size() == 1; }));
    }
};

} // namespace

TEST_F(AgentLife, launch_loadsTheRecogniserAndLeavesNoFile) {
    home.setPreferences({});
    agent.emplace(home);
    agent->awaitLine("[warmup] primeWhisper: enter (ModelStore.isReady=true)");
    agent->awaitLine("[warmup] whisper ready in ");
    agent->awaitLine("[warmup] primeAppleIntelligence: enter (AICleanup.isAvailable=false)");
    EXPECT_TRUE(recognisers().empty());
    QDirIterator left(qEnvironmentVariable("XDG_RUNTIME_DIR"), {"talvera-warmup-*"}, QDir::Files,
                      QDirIterator::Subdirectories);
    EXPECT_FALSE(left.hasNext()) << left.next().toStdString();
}

TEST_F(AgentLife, recogniserKilled_isAnErrorForFourSecondsAndNoMore) {
    RecogniserGate gate;
    startAgent({}, gate.program());
    Receiver editor(Receiver::Kind::Gtk);
    holdAndSay(spoken("Good morning."));
    ::kill(gate.awaitRun(), SIGKILL);
    agent->await("menu error");
    const auto failed = Clock::now();
    agent->await("hud notice Transcription failed");
    EXPECT_TRUE(isClean());
    agent->await("hud hidden");
    agent->await("menu idle");
    EXPECT_GT(Clock::now() - failed, std::chrono::seconds(2)); // the error may be read late
    EXPECT_EQ(editor.text(), "");

    gate.letIn();
    dictateInto(editor);
}

TEST_F(AgentLife, crash_leavesNothingOfWhatWasSaidInACoreFile) {
    rlimit before{};
    ::getrlimit(RLIMIT_CORE, &before);
    const rlimit wide{before.rlim_max, before.rlim_max};
    ::setrlimit(RLIMIT_CORE, &wide); // which the agent inherits
    startAgent();
    ::setrlimit(RLIMIT_CORE, &before);
    Receiver editor(Receiver::Kind::Gtk);
    dictateInto(editor);
    agent->signal(SIGABRT); // which also sanitizers let through
    EXPECT_THROW(agent->awaitEnd(), std::runtime_error) << "it did not crash";
    QDirIterator cores(qEnvironmentVariable("XDG_RUNTIME_DIR"), {"core*"}, QDir::Files | QDir::Hidden,
                       QDirIterator::Subdirectories); // where the agent runs
    EXPECT_FALSE(cores.hasNext()) << cores.next().toStdString();
}

TEST_F(AgentLife, modelsFileThatIsPutThereByHand_isEnoughToDictate) {
    const QTemporaryDir data;
    const QDir models(data.filePath("Talvera/models"));
    ASSERT_TRUE(models.mkpath("."));
    ASSERT_TRUE(QFile::copy(TALVERA_MICRO_MODEL, models.filePath("ggml-medium-q5_0.bin")));
    home.set("XDG_DATA_HOME", data.path());
    startAgent();
    Receiver editor(Receiver::Kind::Gtk);
    dictateInto(editor);
    EXPECT_EQ(models.entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList{"ggml-medium-q5_0.bin"});
}

TEST_F(AgentLife, secondStart_endsAtOnceAndTheFirstStays) {
    startAgent();
    EXPECT_EQ(AgentProcess::startSecond(home), 0);
    agent->awaitRest();
    EXPECT_TRUE(agent->isRunning());
}

TEST_F(AgentLife, secondStartOnTheDisplayFromAnotherEnvironment_isNoSecondAgent) {
    startAgent();
    const QTemporaryDir elsewhere;
    auto environment = home.environment();
    environment.remove("XDG_RUNTIME_DIR"); // as with su, cron, an old terminal multiplexer
    environment.insert("TMPDIR", elsewhere.path());
    EXPECT_EQ(AgentProcess::startSecond(environment), 0);
    EXPECT_TRUE(agent->isRunning());
}

TEST_F(AgentLife, otherDisplayOfTheSameUser_getsAnAgentThatLeavesTheFirstItsRecording) {
    RecogniserGate gate;
    startAgent({}, gate.program());
    Receiver editor(Receiver::Kind::Gtk);
    holdAndSay(spoken("Good morning."));
    gate.awaitRun();
    const OtherDisplay other;
    AgentHome otherHome;
    otherHome.set("DISPLAY", other.name());
    const AgentProcess second(otherHome);
    EXPECT_EQ(leftFiles().size(), 1);
    gate.letIn();
    EXPECT_TRUE(editor.waitForText("Good morning.")) << editor.text().toStdString();
}

TEST_F(AgentLife, privateDirectoryCleanedUpByTheSystem_isThereAgainForTheNextDictation) {
    startAgent();
    Receiver editor(Receiver::Kind::Gtk);
    dictateInto(editor);
    QDir directory(qEnvironmentVariable("XDG_RUNTIME_DIR") + "/talvera");
    // The warm-up may be putting its files there and taking them away again meanwhile.
    ASSERT_TRUE(eventually([&] { return directory.removeRecursively(); }));
    dictateInto(editor);
    EXPECT_TRUE(isClean());
}

TEST_F(AgentLife, endedDuringRecognition_leavesNeitherFileNorRecogniser) {
    RecogniserGate gate;
    startAgent({}, gate.program());
    const Receiver editor(Receiver::Kind::Gtk);
    holdAndSay(spoken("Good morning."));
    gate.awaitRun();
    ASSERT_EQ(leftFiles().size(), 1);
    EXPECT_EQ(agent->end(), 0);
    EXPECT_EQ(recognisers().size(), 0U);
    EXPECT_EQ(leftFiles(), QStringList());
    EXPECT_EQ(editor.text(), "");
}

TEST_F(AgentLife, killedDuringRecognition_takesTheRecogniserAlongAndTheNextStartTidiesUp) {
    RecogniserGate gate;
    startAgent({}, gate.program());
    Receiver editor(Receiver::Kind::Gtk);
    holdAndSay(spoken("Good morning."));
    gate.awaitRun();
    agent->kill();
    expectNoRecogniserIsLeft();
    EXPECT_EQ(leftFiles().size(), 1);

    startAgentAgain();
    EXPECT_EQ(leftFiles(), QStringList());
    dictateInto(editor);
}

TEST_F(AgentLife, privateDirectoryCleanedUpWhileRecording_costsNoText) {
    startWarmAgent();
    Receiver editor(Receiver::Kind::Gtk);
    beginRecording();
    QDir directory(qEnvironmentVariable("XDG_RUNTIME_DIR") + "/talvera");
    const auto agents = [&] { return directory.entryList({"agent-*"}, QDir::Dirs); };
    const auto own = agents();
    ASSERT_EQ(own.size(), 1);
    ASSERT_TRUE(QDir(directory.filePath(own.front())).removeRecursively());
    ASSERT_TRUE(eventually([&] { return agents() == own; }));
    voice.sayAndWait(spoken("Good morning."));
    keys.release(hotkey);
    EXPECT_TRUE(editor.waitForText("Good morning.")) << editor.text().toStdString();
    agent->await("menu idle");
}

TEST_F(AgentLife, killedWhileRecording_takesTheRecogniserThatWaitsAlong) {
    startWarmAgent();
    beginRecording();
    agent->kill();
    keys.release(hotkey);
    expectNoRecogniserIsLeft();
    EXPECT_EQ(leftFiles(), QStringList());
}

TEST_F(AgentLife, endedWhileRecording_leavesNeitherFileNorRecogniser) {
    startWarmAgent();
    beginRecording();
    EXPECT_EQ(agent->end(), 0);
    keys.release(hotkey);
    EXPECT_EQ(recognisers().size(), 0U);
    EXPECT_EQ(leftFiles(), QStringList());
}

TEST_F(AgentLife, recogniserKilledWhileItWaits_isStartedAgainForTheText) {
    startWarmAgent();
    Receiver editor(Receiver::Kind::Gtk);
    beginRecording();
    ASSERT_EQ(::kill(recognisers().front(), SIGKILL), 0);
    expectNoRecogniserIsLeft();
    voice.sayAndWait(spoken("Good morning."));
    keys.release(hotkey);
    EXPECT_TRUE(editor.waitForText("Good morning.")) << editor.text().toStdString();
    agent->await("menu idle");
}

TEST_F(AgentLife, killedWithTheChordHeld_leavesAKeyboardThatWorks) {
    startAgent(chordOfCtrlAltSpace());
    Receiver editor(Receiver::Kind::Gtk);
    for (const auto key : {Key::leftControl, Key::leftAlt, Key::space})
        keys.press(key);
    agent->await("menu recording");
    agent->kill();
    for (const auto key : {Key::space, Key::leftAlt, Key::leftControl})
        keys.release(key);
    keys.tap(Key::h);
    EXPECT_TRUE(editor.waitForText("h")) << editor.text().toStdString();
    EXPECT_EQ(leftFiles(), QStringList());

    startAgentAgain(); // and gets the chord again
    for (const auto key : {Key::leftControl, Key::leftAlt, Key::space})
        keys.press(key);
    agent->await("menu recording");
    voice.sayAndWait(spoken("Good morning."));
    for (const auto key : {Key::space, Key::leftAlt, Key::leftControl})
        keys.release(key);
    EXPECT_TRUE(editor.waitForText("hGood morning.")) << editor.text().toStdString();
    agent->await("menu idle");
}

TEST_F(AgentLife, preferencesOfNoise_areSetAsideAndTheDefaultsApply) {
    std::minstd_rand random;
    QByteArray noise(1 << 20, '\0');
    std::generate(noise.begin(), noise.end(), [&] { return static_cast<char>(random() >> 8); });
    home.setPreferencesFile(noise);
    agent.emplace(home);
    EXPECT_EQ(agent->count("wizard step 0"), 1) << "by default nobody has been welcomed";
    QFile aside(home.preferencesFile() + ".broken-1");
    ASSERT_TRUE(aside.open(QIODevice::ReadOnly));
    EXPECT_TRUE(aside.readAll() == noise);
}
