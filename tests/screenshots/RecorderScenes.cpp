// SPDX-License-Identifier: MIT
#include "RecorderScenes.h"

#include "FakeEventTap.h"
#include "FakeKeyboardLayout.h"
#include "ObservedFakes.h"
#include "RecordingConsole.h"
#include "Stage.h"
#include "hotkeys/HotkeyManager.h"
#include "hotkeys/TranslateToggleHotkey.h"
#include "linux/keyboard/XkbWindowKeys.h"
#include "shell/settings/HotkeyRecorderModel.h"

#include <QCursor>
#include <QQuickItem>
#include <QQuickWindow>

namespace talvera::test {

namespace {

constexpr QRect place(40, 40, 360, 100);
constexpr Duration settled = seconds(0.25);

class RecorderSet {
public:
    explicit RecorderSet(Stage& stage)
        : m_stage(stage) {
        m_toggle.install();
        m_field = stage.views.create("controls/HotkeyRecorder",
                                     {{"recorder", QVariant::fromValue(&model)}, {"absent", "Not set"}});
        m_window.setFlags(Qt::Window | Qt::FramelessWindowHint);
        m_window.setColor(stage.views.theme().property("window").value<QColor>());
        m_window.setGeometry(place);
        m_field->setParentItem(m_window.contentItem());
        m_field->setPosition(QPointF(20, 16));
        m_field->setWidth(place.width() - 40);
        m_window.show();
        m_window.requestActivate();
    }

    void set(const std::optional<HotkeyBinding>& binding) {
        m_stage.settings.translateToggleBinding.set(binding);
        m_toggle.setBinding(binding);
    }
    void giveKeyboard() { m_field->childItems().at(0)->forceActiveFocus(Qt::TabFocusReason); }
    void photograph(const QString& name) {
        m_stage.wait(settled);
        m_stage.photograph("recorder-" + name, place);
    }

    FakeKeyboard keyboard;

private:
    Stage& m_stage;
    RecordingConsole m_console;
    FakeSoundPlayer m_sounds;
    FakeKeyboardLayout m_layout{{{VirtualKey::T, "t"}}};
    XkbWindowKeys m_keys;
    Published<bool> m_suspendHotkey{false};
    HotkeyManager m_hotkey{m_stage.actor, keyboard, m_console};
    TranslateToggleHotkey m_toggle{m_stage.actor, keyboard, m_console};

public:
    HotkeyRecorderModel model{
        {m_stage.settings, m_sounds, m_layout, m_keys, m_suspendHotkey, m_hotkey, m_toggle},
        HotkeyRecorderModel::Shortcut::TranslateToggle};

private:
    QQuickWindow m_window;
    std::unique_ptr<QQuickItem> m_field;
};

} // namespace

void photographRecorder(Stage& stage) {
    RecorderSet recorder(stage);
    recorder.set(HotkeyBinding::chord(0x1C0000, VirtualKey::T));
    recorder.photograph("set");
    recorder.giveKeyboard();
    recorder.photograph("keyboard");
    recorder.model.record();
    recorder.photograph("armed");
    for (const auto key : {VirtualKey::Control, VirtualKey::Option, VirtualKey::Command})
        recorder.keyboard.press(key);
    recorder.keyboard.tap(VirtualKey::T);
    recorder.photograph("bound-chord");
    recorder.model.cancel();
    QCursor::setPos(place.center());
    recorder.photograph("pointer");
    QCursor::setPos(0, 0);
    recorder.set(HotkeyBinding::holdSpecial(HotkeyBinding::SpecialKey::RightCommand));
    recorder.photograph("key-alone");
    recorder.keyboard.takenChords.push_back({0xC0000, VirtualKey::Space});
    recorder.set(HotkeyBinding());
    recorder.photograph("taken");
    recorder.set(std::nullopt);
    recorder.photograph("not-set");
}

} // namespace talvera::test
