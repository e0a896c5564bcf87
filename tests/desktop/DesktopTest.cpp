// SPDX-License-Identifier: MIT
#include "DesktopTest.h"

#include <QDirIterator>
#include <QFile>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <unistd.h>

namespace talvera::test {

namespace {

QString temporaryDirectory() {
    return qEnvironmentVariable("XDG_RUNTIME_DIR") + "/talvera";
}

QByteArray contentsOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The processes of all users with this name. It is asked for many times in a wait, and by hand it is cheap.
std::vector<pid_t> processesNamed(const std::string& name) {
    std::vector<pid_t> found;
    const std::unique_ptr<DIR, int (*)(DIR*)> directory(opendir("/proc"), closedir);
    while (const dirent* entry = directory ? readdir(directory.get()) : nullptr) {
        const pid_t process = std::atoi(entry->d_name);
        if (process <= 0)
            continue;
        std::array<char, 40> path{};
        std::array<char, 20> own{};
        std::snprintf(path.data(), path.size(), "/proc/%d/comm", process);
        const int file = open(path.data(), O_RDONLY | O_CLOEXEC);
        const auto length = file == -1 ? 0 : read(file, own.data(), own.size());
        if (file != -1)
            close(file);
        if (length > 0 && std::string_view(own.data(), static_cast<std::size_t>(length) - 1) == name)
            found.push_back(process);
    }
    return found;
}

/// The process runs in this desktop. One that lets nobody look into it runs where its parent does.
bool runsHere(const QString& process) {
    const auto ours = qgetenv("XDG_RUNTIME_DIR");
    QString looked = process;
    while (looked.toInt() > 1) {
        const auto environment = contentsOf("/proc/" + looked + "/environ").split('\0');
        // A child that gets nothing of the session's environment has its home in the agent's directory.
        if (environment.size() > 1)
            return std::any_of(environment.begin(), environment.end(), [&ours](const QByteArray& variable) {
                return variable == "XDG_RUNTIME_DIR=" + ours || variable.startsWith("HOME=" + ours + '/');
            });
        const auto status = contentsOf("/proc/" + looked + "/stat");
        looked = QString::fromUtf8(status.mid(status.lastIndexOf(')') + 2).split(' ').value(1));
    }
    return false;
}

/// The recogniser prepares for dictations to come. It does so behind everything else, and on a busy machine
/// that may take long.
bool warmsUp(pid_t recogniser) {
    return contentsOf("/proc/" + QString::number(recogniser) + "/cmdline").contains("talvera-warmup-");
}

} // namespace

void DesktopTest::TearDown() {
    if (HasFailure()) { // it may have ended with keys down, and the next test is to begin without
        for (const auto key : {hotkey, Key::leftControl, Key::leftAlt, Key::space, Key::h, Key::v})
            keys.release(key);
    }
    if (!agent || !agent->isRunning())
        return;
    EXPECT_TRUE(isClean());
    EXPECT_EQ(agent->end(), 0);
    EXPECT_EQ(leftFiles(), QStringList());
}

void DesktopTest::startAgent(const QJsonObject& preferences, const QString& program) {
    home.setPreferences(preferences);
    startAgentAgain(program);
}

void DesktopTest::startAgentAgain(const QString& program) {
    agent.emplace(home, program);
    if (agent->count("microphone authorized") == 0)
        agent->await("microphone authorized");
    agent->awaitRest();
}

QJsonObject DesktopTest::chordOfCtrlAltSpace() {
    const QByteArray binding = R"({"chord":{"modifiers":786432,"keyCode":49}})";
    return {{"hotkeyBinding", QJsonObject{{"data", QString::fromLatin1(binding.toBase64())}}}};
}

void DesktopTest::pressHotkey() {
    for (const auto key : hotkeys)
        keys.press(key);
}

void DesktopTest::releaseHotkey() {
    std::for_each(hotkeys.rbegin(), hotkeys.rend(), [this](XKeycode key) { keys.release(key); });
}

void DesktopTest::holdAndSay(const Samples& speech) {
    pressHotkey();
    agent->await("menu recording");
    voice.sayAndWait(speech);
    releaseHotkey();
    agent->await("menu transcribing");
}

bool DesktopTest::eventually(const std::function<bool()>& condition) {
    const auto deadline = std::chrono::steady_clock::now() + AgentProcess::patience;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return true;
}

QString DesktopTest::clipboard() {
    QProcess reader;
    // GNOME gives its clipboard to no program without the focus, but hands that of the X server on.
    const bool isGnome = qEnvironmentVariable("XDG_CURRENT_DESKTOP") == QStringLiteral("GNOME");
    if (qEnvironmentVariableIsSet("WAYLAND_DISPLAY") && !isGnome)
        reader.start("wl-paste", {"-n"});
    else
        reader.start("xclip", {"-o", "-selection", "clipboard"});
    reader.waitForFinished();
    return QString::fromUtf8(reader.readAllStandardOutput());
}

testing::AssertionResult DesktopTest::clipboardBecomes(const QString& text) {
    QString held;
    if (eventually([&] { return (held = clipboard()) == text; }))
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << "the clipboard holds: " << held.toStdString();
}

testing::AssertionResult DesktopTest::isClean() {
    // The recording is deleted a little after the state is idle again.
    const auto noRecogniser = [] {
        const auto all = recognisers();
        return std::all_of(all.begin(), all.end(), warmsUp);
    };
    if (eventually([&] { return leftFiles().isEmpty() && noRecogniser(); }))
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << "left: " << leftFiles().join(", ").toStdString() << "; "
                                       << recognisers().size() << " recognisers, with one that warms up";
}

QStringList DesktopTest::leftFiles() {
    QStringList files;
    QDirIterator each(temporaryDirectory(), QDir::Files | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                      QDirIterator::Subdirectories);
    while (each.hasNext()) {
        each.next();
        const auto name = each.fileName();
        // These hold nothing of what was said.
        if (!name.startsWith("talvera-warmup-") && !name.endsWith(".socket") && !name.endsWith(".sock"))
            files.append(each.filePath());
    }
    return files;
}

std::vector<pid_t> DesktopTest::processes(const QByteArray& name) {
    auto found = processesNamed(name.toStdString());
    std::erase_if(found, [](pid_t process) { return !runsHere(QString::number(process)); });
    return found;
}

} // namespace talvera::test
