// SPDX-License-Identifier: MIT
#include "WizardScenes.h"

#include "InlineBackgroundPool.h"
#include "OnboardingMachine.h"
#include "Stage.h"
#include "linux/x11/windows/X11PanelDesktop.h"
#include "shell/onboarding/OnboardingModel.h"
#include "text/Localization.h"
#include "views/onboarding/QuickWizardWindow.h"

#include <QCoreApplication>
#include <QCursor>
#include <QKeyEvent>
#include <QQuickItem>
#include <QQuickWindow>

#include <utility>

namespace talvera::test {

namespace {

constexpr int margin = 40;
constexpr Duration settled = seconds(0.4);
constexpr Duration typed = seconds(3.6); ///< a sample is nearly typed out

using Phase = ModelDownloader::Phase;
using Demo = DemoPhase::Kind;

/// The wizard on a machine that is as a scene wants it.
class WizardSet : public OnboardingMachine {
public:
    explicit WizardSet(Stage& stage)
        : OnboardingMachine(stage.actor, m_background, stage.settings)
        , m_stage(stage) {
        m_window.bringToFront();
        m_stage.wait(seconds(1));
    }

    void photograph(const QString& name, const QList<Qt::Key>& tapped = {}, Duration wait = settled) {
        m_stage.wait(settled);
        for (const auto key : tapped)
            press(key);
        m_stage.wait(wait);
        m_stage.photograph("wizard-" + name,
                           m_window.window().geometry().adjusted(-margin, -margin, margin, margin));
    }
    /// Points at the middle of what is called so.
    void pointAt(const QPoint& place) {
        QCursor::setPos(m_window.window().position() + place);
        m_stage.wait(settled);
    }
    void pointAway() { QCursor::setPos(0, 0); }

    void setDownload(const Phase& phase, double progress = 0) {
        downloader.phase.set(phase);
        downloader.bytesTotal.set(539212467);
        downloader.bytesWritten.set(static_cast<std::int64_t>(progress * 539212467));
        downloader.progress.set(progress);
    }
    void setDemo(DemoPhase phase, const QString& transcript = {}) {
        controller.demoTranscript.set(transcript);
        controller.demoPhase.set(std::move(phase));
    }

private:
    void press(Qt::Key key) {
        for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(type, key, Qt::NoModifier);
            QCoreApplication::sendEvent(&m_window.window(), &event);
        }
        m_stage.wait(settled);
    }

    Stage& m_stage;
    InlineBackgroundPool m_background;
    OnboardingModel m_model{{controller, downloader, readiness, settings, layout, &recorder}};
    X11PanelDesktop m_desktop{m_stage.server};
    QuickWizardWindow m_window{m_stage.views, m_model, m_desktop};
};

void photographPermissions(WizardSet& wizard) {
    wizard.goTo(OnboardingController::PermissionsStep);
    wizard.photograph("3-permissions-granted");
    wizard.setMissing(true, false);
    wizard.photograph("3-permissions-microphone-missing");
    wizard.permission.denial = MicrophoneLack::Server;
    wizard.controller.micStatus.set(AuthorizationStatus::Denied);
    wizard.photograph("3-permissions-no-sound-server");
    wizard.permission.denial = MicrophoneLack::Permission;
    wizard.controller.micStatus.set(AuthorizationStatus::Denied);
    wizard.photograph("3-permissions-microphone-refused");
    wizard.settingsPanels.hasPanels = false;
    wizard.controller.openMicrophoneSettings();
    wizard.photograph("3-permissions-advice");
    wizard.settingsPanels.hasPanels = true;
    wizard.permission.denial = MicrophoneLack::Server;
    wizard.permission.current = AuthorizationStatus::NotDetermined;
    wizard.readiness.refresh();
    wizard.photograph("3-permissions-microphone-needed");
    wizard.setMissing(true, true);
    wizard.photograph("3-permissions-both-missing");
    for (const auto& [lack, name] :
         {std::pair(SessionLack::KnownSession, "session"), std::pair(SessionLack::KeyWatching, "keys"),
          std::pair(SessionLack::ActiveWindow, "window"), std::pair(SessionLack::KeyPosting, "typing")}) {
        wizard.access.lack = lack;
        wizard.controller.axTrusted.set(false);
        wizard.photograph(QString("3-permissions-no-") + name);
    }
    wizard.controller.pressPrimary();
    wizard.photograph("3-permissions-question");
    wizard.photograph("3-permissions-question-keyboard", {Qt::Key_Tab});
    wizard.controller.dismissQuestion();
    wizard.access.lack = SessionLack::Permission;
    wizard.setMissing(false, false);
}

void photographDownload(WizardSet& wizard) {
    wizard.goTo(OnboardingController::DownloadStep);
    wizard.setDownload(Phase::Idle);
    wizard.photograph("4-download-idle");
    wizard.setDownload(Phase::Downloading, 0.0);
    wizard.photograph("4-download-begun");
    wizard.setDownload(Phase::Downloading, 0.42);
    wizard.photograph("4-download-half");
    wizard.downloader.waitsForNetwork.set(true);
    wizard.photograph("4-download-waits");
    wizard.downloader.waitsForNetwork.set(false);
    wizard.setDownload(Phase::Verifying, 1);
    wizard.photograph("4-download-verifying");
    wizard.setDownload(Phase::Extracting, 1);
    wizard.photograph("4-download-extracting");
    wizard.setDownload(
        Phase::failed(localized("download.failed.connectionLost", "The connection was cut off.")));
    wizard.photograph("4-download-failed");
    wizard.setDownload(Phase::failed(
        localized("download.failed.notTrusted",
                  "No secure connection: the server could not prove who it is. In a hotel or a café, sign in "
                  "to the network first, and check the date of your computer.")));
    wizard.photograph("4-download-failed-long", {Qt::Key_Tab});
    wizard.finishDownload();
    wizard.setDownload(Phase::Done, 1);
    wizard.photograph("4-download-done");
}

void photographHotkey(WizardSet& wizard) {
    using Special = HotkeyBinding::SpecialKey;
    wizard.goTo(OnboardingController::HotkeyStep);
    wizard.photograph("5-hotkey");
    wizard.photograph("5-hotkey-keyboard", {Qt::Key_Tab, Qt::Key_Tab});
    wizard.pointAt({380, 250});
    wizard.photograph("5-hotkey-pointer");
    wizard.pointAway();
    wizard.settings.hotkeyBinding.set(HotkeyBinding::holdSpecial(Special::Fn));
    wizard.photograph("5-hotkey-fn");
    wizard.settings.hotkeyBinding.set(HotkeyBinding());
    wizard.photograph("5-hotkey-chord");
    wizard.settings.hotkeyBinding.set(HotkeyBinding::chord(0x1C0000, VirtualKey::T));
    wizard.photograph("5-hotkey-custom");
    wizard.recorder.record();
    wizard.photograph("5-hotkey-recording");
    wizard.hotkey.presses().set(1);
    wizard.photograph("5-hotkey-set-already");
    wizard.recorder.cancel();
    wizard.hotkey.watchResult().set(WatchResult::ChordTaken);
    wizard.photograph("5-hotkey-taken");
    wizard.hotkey.watchResult().set(WatchResult::Unavailable);
    wizard.photograph("5-hotkey-unavailable");
    wizard.hotkey.watchResult().set(std::nullopt);
    wizard.settings.hotkeyBinding.set(HotkeyBinding::holdSpecial(Special::RightCommand));
}

void photographDemo(WizardSet& wizard) {
    wizard.goTo(OnboardingController::DemoStep);
    wizard.photograph("6-demo-warmup");
    wizard.controller.didWhisperWarmup.set(true);
    wizard.photograph("6-demo-idle");
    wizard.setDemo({Demo::Recording});
    wizard.controller.demoLevel.set(0.7F);
    wizard.photograph("6-demo-recording");
    wizard.setDemo({Demo::Transcribing});
    wizard.photograph("6-demo-transcribing");
    wizard.setDemo({Demo::Done},
                   localized("screenshot.demo", "Good morning. Please send the report tomorrow."));
    wizard.photograph("6-demo-done", {}, seconds(1.6));
    QString manyWords;
    for (int i = 0; i < 12; ++i)
        manyWords += localized("screenshot.demo", "Good morning. Please send the report tomorrow.") + " ";
    wizard.setDemo({Demo::Done}, manyWords);
    wizard.photograph("6-demo-done-long", {}, seconds(14));
    wizard.setDemo({Demo::Done});
    wizard.photograph("6-demo-empty");
    wizard.setDemo(DemoPhase::error(
        localized("onboarding.demo.error.microphone",
                  "The microphone can't be opened. Plug one in, or allow it in the sound settings.")));
    wizard.photograph("6-demo-error");
    wizard.setDemo({Demo::Idle});
    wizard.photograph("6-demo-keyboard", {Qt::Key_Tab});
    wizard.settings.hotkeyBinding.set(HotkeyBinding());
    wizard.settings.hotkeyTapToToggle.set(true);
    wizard.photograph("6-demo-tap-chord");
    wizard.setDemo({Demo::Recording});
    wizard.photograph("6-demo-tap-recording");
    wizard.setDemo({Demo::Idle});
    wizard.settings.hotkeyTapToToggle.set(false);
    wizard.settings.hotkeyBinding.set(HotkeyBinding::holdSpecial(HotkeyBinding::SpecialKey::RightCommand));
    wizard.setMissing(true, false);
    wizard.photograph("6-demo-microphone-missing");
    wizard.setMissing(true, true);
    wizard.photograph("6-demo-both-missing");
    wizard.settingsPanels.hasPanels = false;
    wizard.controller.openMicrophoneSettings();
    wizard.photograph("6-demo-advice");
    wizard.settingsPanels.hasPanels = true;
    wizard.setMissing(false, false);
}

} // namespace

void photographWizard(Stage& stage) {
    WizardSet wizard(stage);
    wizard.photograph("1-welcome", {}, typed);
    if (stage.isForFrontPage())
        return;
    wizard.photograph("1-welcome-keyboard", {Qt::Key_Tab});
    wizard.pointAt({660, 546});
    wizard.photograph("1-welcome-pointer");
    wizard.pointAway();
    wizard.goTo(OnboardingController::EverywhereStep);
    wizard.photograph("2-everywhere-terminal", {}, seconds(1.4));
    wizard.photograph("2-everywhere-chat", {}, seconds(4.5));
    wizard.photograph("2-everywhere-keyboard", {Qt::Key_Tab});
    photographPermissions(wizard);
    photographDownload(wizard);
    photographHotkey(wizard);
    photographDemo(wizard);
}

} // namespace talvera::test
