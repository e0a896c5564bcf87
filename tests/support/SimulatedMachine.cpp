// SPDX-License-Identifier: MIT
#include "SimulatedMachine.h"

#include <QCryptographicHash>

#include <cmath>

namespace talvera::test {

SimulatedMachine::SimulatedMachine() {
    workspace.runInFront({100, QStringLiteral("org.example.editor"), QStringLiteral("Editor")});
    makeEverythingWork();
}

SimulatedMachine::SimulatedMachine(AfterDeath, const SimulatedMachine& before)
    : livesBefore(before.livesBefore + 1)
    , actor(before.actor.now()) {
    actor.setStartDate(before.actor.startDate());
    disk.become(before.disk);
    const auto shared = QStringLiteral("/run/talvera");
    disk.removeAll(shared);
    directories.temporary = shared + QStringLiteral("/agent-%1").arg(livesBefore);
    disk.createDirectories(directories.temporary);
    preferences.values = before.preferences.saved();
    databases.onDisk = before.databases.onDisk;
    keyboard.become(before.keyboard);
    workspace.become(before.workspace);
    if (const auto text = before.clipboard.string())
        clipboard.setString(*text); // a program of its own serves it
    m_names = before.m_names;
    makeEverythingWork();
    microphone.secondsPerRecording = before.microphone.secondsPerRecording;
    tool.become(before.tool);
}

void SimulatedMachine::makeEverythingWork() {
    static const auto digest =
        QString::fromLatin1(QCryptographicHash::hash(wholeModel, QCryptographicHash::Sha256).toHex());
    modelSource.main = {QUrl(QStringLiteral("https://models.example.org/ggml-medium-q5_0.bin")), digest,
                        wholeModel.size()};
    disk.addExecutable(directories.resources + QStringLiteral("/Resources/whisper-cli"));
    setModelReady(true);
    accessibility.onRead = [this] {
        if (accessibilityTakes > Duration::zero())
            actor.blockFor(accessibilityTakes);
    };
    microphone.secondsPerRecording = 2.0;
    ToolRun run;
    run.text = "hello world";
    tool.setRuns({run});
}

void SimulatedMachine::setModelReady(bool ready) {
    const auto models = directories.applicationSupport + QStringLiteral("/Talvera/models");
    const auto model = models + QStringLiteral("/ggml-medium-q5_0.bin");
    if (ready) {
        disk.createDirectories(models + QStringLiteral("/ggml-medium-encoder.mlmodelc"));
        disk.write(model, wholeModel);
    } else if (disk.exists(model)) {
        disk.remove(model);
    }
}

double SimulatedMachine::recordedSeconds() const {
    constexpr double rate = 16000.0;
    return converters.refuses ? 0 : std::round(microphone.heardSeconds() * rate) / rate;
}

void SimulatedMachine::loseTemporaryDirectory() {
    disk.removeAll(directories.temporary);
    actor.post([this] { disk.createDirectories(directories.temporary); });
}

Machine SimulatedMachine::machine() {
    return {.actor = actor,
            .background = background,
            .keyboard = {.eventTaps = keyboard,
                         .layout = layout,
                         .windowKeys = windowKeys,
                         .poster = keyPoster,
                         .typing = typing},
            .desktop = {.workspace = workspace,
                        .accessibility = accessibility,
                        .access = access,
                        .pasteboard = pasteboard,
                        .statusItem = statusItem,
                        .pointer = pointer,
                        .activation = activation,
                        .settingsPanels = settingsPanels,
                        .fileBrowser = fileBrowser,
                        .notifier = notifier},
            .sound = {.engine = audioEngine,
                      .converters = converters,
                      .files = audioFiles,
                      .permission = microphonePermission,
                      .player = sounds},
            .system = {.files = files,
                       .directories = directories,
                       .processes = tool,
                       .application = application,
                       .preferences = preferences,
                       .sessions = databases,
                       .loginItem = loginItem,
                       .relauncher = relauncher,
                       .description = description,
                       .updates = updates,
                       .network = network,
                       .console = console,
                       .makeFreshName =
                           [this] {
                               return QStringLiteral("00000000-0000-4000-8000-%1")
                                   .arg(++m_names, 12, 16, QChar(u'0'));
                           },
                       .modelSource = modelSource},
            .language = {.model = languageModel,
                         .choice = languageModelChoice,
                         .recognizer = languageRecognizer,
                         .fonts = fonts,
                         .preferred = {}}};
}

} // namespace talvera::test
