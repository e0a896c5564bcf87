// SPDX-License-Identifier: MIT
#include "SettingsScenes.h"

#include "SettingsMachine.h"
#include "SimulatedMainActor.h"
#include "Stage.h"
#include "linux/x11/windows/X11PanelDesktop.h"
#include "views/settings/QuickSettingsWindow.h"

#include <QCoreApplication>
#include <QFile>
#include <QKeyEvent>
#include <QQuickItem>
#include <QQuickWindow>

namespace talvera::test {

namespace {

constexpr int margin = 40;
constexpr Duration settled = seconds(0.5);

struct SettingsGround {
    SimulatedMainActor typingActor;
    SimulatedSerialQueue typing{typingActor};
};

/// The settings on a machine that is as a scene wants it.
class SettingsSet : private SettingsGround, public SettingsMachine {
public:
    explicit SettingsSet(Stage& stage)
        : SettingsMachine(stage.actor, typing, stage.settings, stage.language())
        , m_stage(stage) {
        loginItem.registered = true;
        m_window.bringToFront();
        m_stage.wait(seconds(1));
    }

    void photograph(const QString& name, const QList<Qt::Key>& struck = {}) {
        m_stage.wait(settled);
        for (const auto key : struck)
            press(key);
        m_stage.wait(settled);
        m_stage.photograph("settings-" + name,
                           m_window.window().geometry().adjusted(-margin, -margin, margin, margin));
    }
    /// Shows the section and gives the keyboard to its first control.
    void show(const QString& section) {
        m_model.select(section);
        QMetaObject::invokeMethod(&m_window.view(), "takeKeyboard");
    }
    SettingsModel& model() { return m_model; }
    void resize(QSize size) { m_window.window().resize(size); }

private:
    void press(Qt::Key key) {
        for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(type, key, Qt::NoModifier);
            QCoreApplication::sendEvent(&m_window.window(), &event);
        }
        m_stage.wait(seconds(0.2));
    }

    Stage& m_stage;
    SettingsModel m_model{modelParts};
    X11PanelDesktop m_desktop{m_stage.server};
    QuickSettingsWindow m_window{m_stage.views, m_model, m_desktop};
};

} // namespace

void photographSettings(Stage& stage) {
    using Special = HotkeyBinding::SpecialKey;
    const QList<Qt::Key> toFirstControl(6, Qt::Key_Tab);
    SettingsSet set(stage);
    if (stage.isForFrontPage()) {
        set.resize({840, 676}); // all of the section, and no more than the screen shows
        set.photograph("1-general");
        return;
    }
    set.photograph("1-general");
    set.photograph("1-general-list", QList<Qt::Key>(toFirstControl) << Qt::Key_Space);
    set.photograph("1-general-chosen",
                   {Qt::Key_End, Qt::Key_Up, Qt::Key_Up, Qt::Key_Up, Qt::Key_Up, Qt::Key_Return});
    stage.settings.appLanguage.set("fr");
    set.loginItem.registered = false;
    set.loginItem.fails = true;
    set.model().general()->appear();
    set.model().general()->launchAtLogin()->set(true);
    set.photograph("1-general-banner");
    stage.settings.appLanguage.set("system");
    set.model().general()->appear();

    set.show("hotkey");
    set.photograph("2-hotkey");
    stage.settings.hotkeyBinding.set(HotkeyBinding::holdSpecial(Special::Fn));
    set.photograph("2-hotkey-fn");
    stage.settings.hotkeyBinding.set(HotkeyBinding::chord(0x1C0000, VirtualKey::T));
    set.photograph("2-hotkey-custom");
    set.hotkeyRecorder.record();
    set.photograph("2-hotkey-recording");
    set.hotkeyRecorder.cancel();
    stage.settings.hotkeyBinding.set(HotkeyBinding::holdSpecial(Special::RightCommand));

    stage.settings.targetLanguageCode.set("off");
    set.show("language");
    set.photograph("3-language");
    stage.settings.targetLanguageCode.set("de");
    set.photograph("3-language-translating", toFirstControl);
    stage.settings.translateToggleBinding.set(std::nullopt);
    set.photograph("3-language-no-shortcut");
    stage.settings.targetLanguageCode.set("off");

    set.show("ai");
    set.photograph("4-ai");
    set.readiness.aiState.set(AIAvailabilityState::IntelligenceOff);
    set.photograph("4-ai-off");
    set.readiness.aiState.set(AIAvailabilityState::Available);
    set.photograph("4-ai-available", {Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Space});
    set.setModelState(std::nullopt);
    set.languageModelChoice.choice = "b.gguf";
    set.setModels({{"a.gguf", "Meadow 3B Instruct"}, {"b.gguf", "Heath 1.5B Instruct"}});
    set.show("general");
    set.show("ai");
    set.photograph("4-ai-models", {Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Tab});
    set.photograph("4-ai-models-list", {Qt::Key_Space});
    set.show("general");
    set.show("ai");
    set.setModelState(LanguageModel::UnavailableReason::IntelligenceOff);
    set.setModels({{"a.gguf", "Meadow 3B Instruct"}});
    set.photograph("4-ai-model-gone");
    set.setModelState(LanguageModel::UnavailableReason::DeviceNotEligible);

    set.show("privacy");
    set.photograph("5-privacy");
    set.model().selectAbout();
    set.photograph("6-about");
    set.files.createDirectories("/opt/talvera/Resources/licences");
    QFile text(TALVERA_LICENCES "/at-spi.txt");
    if (text.open(QFile::ReadOnly))
        set.files.write("/opt/talvera/Resources/licences/at-spi.txt", text.readAll());
    set.model().about()->thirdParties()->open(0);
    set.photograph("6-about-licence");
    set.show("general");
    set.resize({560, 400});
    set.photograph("7-small");
}

} // namespace talvera::test
