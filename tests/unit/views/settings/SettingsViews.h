// SPDX-License-Identifier: MIT
#pragma once

#include "SettingsFixture.h"
#include "ShownItems.h"
#include "platform/desktop/DesktopAppearance.h"
#include "views/ViewEngine.h"

#include <QQuickWindow>
#include <QTest>

#include <memory>
#include <optional>
#include <stdexcept>

namespace talvera::test {

inline constexpr QSize usualSize(840, 640);

/// The settings' view and its model, without a screen.
class SettingsViews : public SettingsFixture, protected ShownItems {
protected:
    void make(QSize size = usualSize) {
        view.reset();
        model.emplace(modelParts);
        view = views.create("settings/SettingsWindowView",
                            {{"settings", QVariant::fromValue<QObject*>(&*model)}});
        view->setParentItem(window.contentItem());
        window.resize(size);
        window.contentItem()->setSize(size); // lists float in it, also in a window that isn't shown
        view->setSize(size);
    }
    /// With the keyboard, as the user has it.
    void show() {
        make();
        window.show();
        window.requestActivate();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        QMetaObject::invokeMethod(view.get(), "takeKeyboard");
        layOut(*view);
    }
    /// With what floats above the view.
    QQuickItem& root() const override { return *window.contentItem(); }

    /// What can be used and is called so.
    QQuickItem& control(const QString& name) {
        const auto found =
            shownItems([&](QQuickItem& item) { return item.activeFocusOnTab() && nameOf(item) == name; });
        if (found.empty())
            throw std::runtime_error("no control " + name.toStdString());
        return *found.front();
    }
    static QString nameOf(const QQuickItem& item) {
        for (const auto* property : {"label", "text"}) {
            if (const auto name = item.property(property).toString(); !name.isEmpty())
                return name;
        }
        return item.parentItem() ? item.parentItem()->property("label").toString() : QString();
    }
    QString focused() const {
        return window.activeFocusItem() ? nameOf(*window.activeFocusItem()) : QString();
    }

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(&window, key, modifiers);
    }
    /// As a keyboard sends it: a recorder goes by the place of the key.
    void pressEscapeKey() {
        constexpr quint32 place = 1 + 8; // evdev's code, and what X adds to it
        for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(type, Qt::Key_Escape, Qt::NoModifier, place, 0, 0);
            QCoreApplication::sendEvent(&window, &event);
        }
    }
    void click(const QQuickItem& item) {
        QTest::mouseClick(&window, Qt::LeftButton, {}, placeOf(item).center().toPoint());
    }
    /// What the keyboard gets to by Tab, from where it is until it is there again.
    QStringList tabbed() {
        QStringList reached{focused()};
        for (press(Qt::Key_Tab); focused() != reached.first() && reached.size() < 40; press(Qt::Key_Tab))
            reached << focused();
        return reached;
    }

    void expectWholeTexts(const QString& state) {
        for (const auto* text : shownTexts())
            expectWholeAcross(*text, state);
    }
    /// The same with each list of the section open.
    void expectWholeLists(const QString& state) {
        for (auto* select :
             shownItems([](QQuickItem& item) { return item.property("listOpen").isValid(); })) {
            select->setProperty("listOpen", true);
            expectWholeTexts(state + ", " + nameOf(*select));
            select->setProperty("listOpen", false);
        }
    }
    /// The same while a shortcut is recorded.
    void expectWholeRecording(HotkeyRecorderModel& recorder, const QString& state) {
        recorder.record();
        expectWholeTexts(state);
        recorder.cancel();
    }
    /// Every section in every state, at this size.
    void expectWholeTextsEverywhere(QSize size) {
        make(size);
        settings.appLanguage.set("fr");
        settings.targetLanguageCode.set("de");
        loginItem.fails = true;
        model->general()->launchAtLogin()->set(true);
        expectWholeTexts("general");
        expectWholeLists("general");
        model->select("hotkey");
        expectWholeTexts("hotkey");
        expectWholeRecording(hotkeyRecorder, "hotkey recorded");
        for (const auto special : {Special::Fn, Special::CapsLock})
            settings.hotkeyBinding.set(HotkeyBinding::holdSpecial(special));
        settings.hotkeyBinding.set(HotkeyBinding::holdSpecial(Special::Fn));
        expectWholeTexts("Fn");
        settings.hotkeyBinding.set(HotkeyBinding::chord(0x1E0000, VirtualKey::Space));
        expectWholeTexts("own hotkey");
        model->select("language");
        expectWholeTexts("language");
        expectWholeLists("language");
        expectWholeRecording(toggleRecorder, "shortcut recorded");
        model->language()->clearToggle();
        expectWholeTexts("no shortcut");
        model->select("ai");
        expectWholeLists("ai");
        for (const auto& models : {std::vector<LanguageModelChoice::Offer>{}, {{"a.gguf", "Alpha"}}}) {
            setModels(models);
            for (const auto state : allCases<AIAvailabilityState>()) {
                readiness.aiState.set(state);
                expectWholeTexts("ai");
            }
        }
        expectWholeLists("ai with a model");
        languageModelChoice.choice = "b.gguf";
        setModels({});
        expectWholeTexts("ai without its model");
        languageModelChoice.choice.clear();
        model->select("privacy");
        expectWholeTexts("privacy");
        model->selectAbout();
        expectWholeTexts("about");
        model->about()->copyDetails();
        actor.settle();
        expectWholeTexts("copied");
        model->about()->thirdParties()->open(0); // which is missing here
        expectWholeTexts("licence");
    }

    DesktopAppearance appearance;
    ViewEngine views{appearance};
    QQuickWindow window;
    std::optional<SettingsModel> model;
    std::unique_ptr<QQuickItem> view;
};

} // namespace talvera::test
