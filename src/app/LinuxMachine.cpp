// SPDX-License-Identifier: MIT
#include "app/LinuxMachine.h"

#include "linux/xdg/sessionLanguages.h"

#include <QProcessEnvironment>
#include <QUuid>

#include <utility>

namespace talvera {

namespace {

/// A UUID in upper case.
QString freshName() {
    return QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
}

} // namespace

LinuxMachine::LinuxMachine(QtMainActor& actor, Console& console, Directories directories,
                           SessionOffer session)
    : m_actor(actor)
    , m_console(console)
    , m_directories(std::move(directories))
    , m_session(std::move(session))
    , m_backEnds(chooseBackEnds(m_session, {m_actor, m_console, m_directories, m_installed})) {
    m_accessibility.enableForSession();
}

Machine LinuxMachine::machine() {
    return {.actor = m_actor,
            .background = m_background,
            .keyboard = {.eventTaps = *m_backEnds.eventTaps,
                         .layout = *m_backEnds.keyboardLayout,
                         .windowKeys = m_windowKeys,
                         .poster = *m_backEnds.keyPoster,
                         .typing = m_typing},
            .desktop = {.workspace = *m_backEnds.workspace,
                        .accessibility = m_accessibility,
                        .access = *m_backEnds.access,
                        .pasteboard = *m_backEnds.pasteboard,
                        .statusItem = *m_backEnds.statusItem,
                        .pointer = *m_backEnds.pointer,
                        .activation = m_activation,
                        .settingsPanels = m_settingsPanels,
                        .fileBrowser = m_fileBrowser,
                        .notifier = m_notifier},
            .sound = {.engine = m_microphone,
                      .converters = m_converters,
                      .files = m_audioFiles,
                      .permission = m_microphonePermission,
                      .player = m_player},
            .system = {.files = m_files,
                       .directories = m_directories,
                       .processes = m_processes,
                       .application = m_application,
                       .preferences = m_preferences,
                       .sessions = m_sessions,
                       .loginItem = m_loginItem,
                       .relauncher = m_relauncher,
                       .description = m_description,
                       .updates = m_updates,
                       .network = m_network,
                       .console = m_console,
                       .makeFreshName = freshName,
                       .modelSource = m_model.source},
            .language = {.model = m_languageModel,
                         .choice = m_languageModel,
                         .recognizer = m_languageRecognizer,
                         .fonts = m_fonts,
                         .preferred = sessionLanguages(QProcessEnvironment::systemEnvironment())}};
}

void LinuxMachine::endWork() {
    m_processes.endAll();
    m_background.finish();
}

} // namespace talvera
