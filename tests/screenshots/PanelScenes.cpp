// SPDX-License-Identifier: MIT
#include "PanelScenes.h"

#include "FakeEventTap.h"
#include "FakeFileSystem.h"
#include "FakeKeyboardLayout.h"
#include "FakeLanguageModel.h"
#include "FakeMicrophonePermission.h"
#include "FakeProgramActivation.h"
#include "FakeSessionAccess.h"
#include "FakeSessionDatabase.h"
#include "FakeSettingsPanels.h"
#include "InlineBackgroundPool.h"
#include "RecordingConsole.h"
#include "Stage.h"
#include "hotkeys/TranslateToggleHotkey.h"
#include "linux/x11/windows/X11PanelDesktop.h"
#include "persistence/StatsStore.h"
#include "platform/system/Directories.h"
#include "shell/panel/MenuPanelModel.h"
#include "shell/readiness/ReadinessMonitor.h"
#include "text/Localization.h"
#include "views/panel/KeyablePanel.h"
#include "views/panel/QuickMenuPanel.h"

#include <QCoreApplication>
#include <QCursor>
#include <QKeyEvent>
#include <QQuickItem>

namespace talvera::test {

namespace {

constexpr int margin = 28;
constexpr QPoint place(490, 40);
constexpr Duration settled = seconds(0.35);

/// A panel on a machine that is as a scene wants it.
class PanelSet {
public:
    explicit PanelSet(Stage& stage)
        : m_stage(stage) {
        m_model.followUpdateCheck(isCheckingForUpdates);
    }

    /// Opens the panel anew, presses `keys` in it, and takes its picture.
    void photograph(const QString& name, const QList<Qt::Key>& keys = {}, const QString& typed = {}) {
        m_panel.renewContent();
        const auto screen = m_panel.screenOf(QRect(place, QSize(1, 1)));
        const int height = std::min(m_panel.fittingHeight(), screen.visible.height() - 2 * menuPanelGap);
        m_panel.fadeIn(QRect(place, QSize(menuPanelWidth, height)));
        m_stage.wait(settled);
        for (const auto key : keys)
            press(key);
        for (const auto& character : typed)
            press(Qt::Key_unknown, character);
        m_stage.wait(settled);
        m_stage.photograph("panel-" + name, m_panel.frame().adjusted(-margin, -margin, margin, margin));
        m_panel.fadeOut();
        m_stage.wait(seconds(0.2));
    }

    /// The same while the pointer rests on this place of the panel.
    void photographTip(const QString& name, const QPoint& on) {
        m_panel.renewContent();
        m_panel.fadeIn(QRect(place, QSize(menuPanelWidth, m_panel.fittingHeight())));
        QCursor::setPos(place + on);
        m_stage.wait(seconds(1));
        m_stage.photograph("panel-" + name, m_panel.frame().adjusted(-margin, -margin, margin, margin));
        QCursor::setPos(0, 0);
        m_panel.fadeOut();
        m_stage.wait(seconds(0.2));
    }

    void setLanguageModel(std::optional<LanguageModel::UnavailableReason> reason) {
        m_languageModel.reason = reason;
        m_languageModel.languages = {"en", "es", "fr", "de", "it", "pt-BR", "pt", "nl", "ja"};
        readiness.refresh();
    }
    void setToggle(const std::optional<HotkeyBinding>& binding) {
        m_stage.settings.translateToggleBinding.set(binding);
        m_toggle.setBinding(binding);
        m_toggle.install();
    }
    void setMissing(bool microphoneMissing, bool accessibilityMissing) {
        m_microphone.current =
            microphoneMissing ? AuthorizationStatus::Denied : AuthorizationStatus::Authorized;
        m_access.trusted = !accessibilityMissing;
        readiness.refresh();
    }

private:
    void press(Qt::Key key, const QString& text = {}) {
        for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(type, key, Qt::NoModifier, text);
            QCoreApplication::sendEvent(&m_panel.window(), &event);
        }
    }

    Stage& m_stage;
    Directories m_directories{"/run/talvera", "/home/data", "/home/config", "/opt/talvera"};
    FakeFileSystem m_files{{m_directories.temporary, m_directories.applicationSupport}};
    RecordingConsole m_console;
    FakeSessionDatabases m_databases;
    InlineBackgroundPool m_background;
    FakeMicrophonePermission m_microphone{m_stage.actor};
    FakeSessionAccess m_access;
    FakeLanguageModel m_languageModel;
    FakeSettingsPanels m_settingsPanels;
    FakeKeyboardLayout m_layout{{{VirtualKey::T, "t"}}};
    FakeProgramActivation m_activation;

public:
    Published<bool> isCheckingForUpdates{false};
    MenuBarController menuBar{m_stage.actor, m_stage.settings};
    StatsStore stats{{m_stage.actor, m_background, m_databases, m_files, m_directories, m_console}};
    ReadinessMonitor readiness{
        {m_stage.actor, m_microphone, m_access, m_languageModel, m_settingsPanels, m_activation}};

private:
    FakeKeyboard m_keyboard;
    TranslateToggleHotkey m_toggle{m_stage.actor, m_keyboard, m_console};
    MenuPanelModel m_model{
        {menuBar, m_stage.settings, stats, readiness, m_languageModel, m_layout, m_toggle}};
    X11PanelDesktop m_desktop{m_stage.server};
    QuickMenuPanel m_panel{m_stage.views, m_model, m_desktop};
};

} // namespace

void photographPanel(Stage& stage) {
    using State = MenuBarController::State;
    stage.settings.targetLanguageCode.set("off");
    stage.settings.aiCleanupEnabled.set(false);
    PanelSet panel(stage);

    if (stage.isForFrontPage()) {
        panel.setLanguageModel(std::nullopt);
        panel.stats.lastWeekStats.set({2 * 3600 + 5 * 60, 148});
        panel.photograph("ready");
        return;
    }
    panel.setLanguageModel(LanguageModel::UnavailableReason::IntelligenceOff);
    panel.photograph("model-off");
    panel.setLanguageModel(LanguageModel::UnavailableReason::DeviceNotEligible);
    panel.photograph("ready-without-model");
    panel.photograph("picker-without-model", {Qt::Key_Down, Qt::Key_Return});

    panel.setLanguageModel(std::nullopt);
    panel.stats.lastWeekStats.set({2 * 3600 + 5 * 60, 148});
    panel.photograph("ready");
    stage.settings.aiCleanupEnabled.set(true);
    stage.settings.targetLanguageCode.set("pt-BR");
    panel.setToggle(HotkeyBinding::chord(0x1C0000, VirtualKey::T));
    panel.photograph("ready-everything-on");
    panel.photograph("keyboard", {Qt::Key_Tab, Qt::Key_Tab});
    QCursor::setPos(place + QPoint(menuPanelWidth / 2, 345)); // over one of the lower rows
    panel.photograph("pointer");
    QCursor::setPos(0, 0);
    panel.photograph("picker", {Qt::Key_Down, Qt::Key_Return});
    panel.photograph("picker-search", {Qt::Key_Down, Qt::Key_Return}, "an");
    panel.photograph("picker-no-match", {Qt::Key_Down, Qt::Key_Return}, "klingon");
    panel.photographTip("tip", QPoint(230, 84)); // over the key
    panel.setToggle(std::nullopt);
    panel.isCheckingForUpdates.set(true);
    panel.photograph("checking-for-updates");
    panel.isCheckingForUpdates.set(false);

    panel.setMissing(true, false);
    panel.photograph("banner-microphone");
    panel.setMissing(false, true);
    panel.photograph("banner-accessibility");
    panel.setMissing(true, true);
    panel.photograph("banner-both");
    panel.setMissing(false, false);

    panel.menuBar.state.set(State::Recording);
    panel.photograph("recording");
    stage.settings.hotkeyTapToToggle.set(true);
    panel.photograph("recording-tap");
    stage.settings.hotkeyTapToToggle.set(false);
    panel.menuBar.state.set(State::Transcribing);
    panel.photograph("transcribing");
    panel.menuBar.lastErrorMessage.set(localized("screenshot.error", "Transcription failed"));
    panel.menuBar.state.set(State::Error);
    panel.photograph("error");
    panel.menuBar.lastErrorMessage.set(
        localized("screenshot.error.long", "The microphone “Monitor of Starship/Matisse HD Audio Controller "
                                           "Analog Stereo” can't be opened"));
    panel.photograph("error-long");
    panel.menuBar.state.set(State::Idle);

    panel.stats.lastWeekStats.set({0, 0});
    panel.photograph("stats-empty");
    panel.stats.lastWeekStats.set({59, 1});
    panel.photograph("stats-first");
    panel.stats.lastWeekStats.set({99'999LL * 3600 + 59 * 60, 12'345'678'901});
    panel.photograph("stats-huge");
}

} // namespace talvera::test
