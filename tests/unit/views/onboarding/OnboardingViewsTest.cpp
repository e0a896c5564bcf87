// SPDX-License-Identifier: MIT
// What the wizard's views make of its state and of what the user does, without a screen.
#include "OnboardingViewFixture.h"

#include <QKeyEvent>
#include <QSignalSpy>
#include <QTest>

#include <stdexcept>

using namespace talvera;
using namespace talvera::test;

namespace {

class OnboardingViews : public OnboardingViewFixture {
protected:
    /// With the keyboard, as the user has it.
    void show() {
        window.resize(760, 580);
        window.show();
        window.requestActivate();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        QMetaObject::invokeMethod(view.get(), "takeKeyboard");
    }

    /// How many timers run: what moves does so by them.
    int ticking() const {
        int count = 0;
        for (const auto* object : view->findChildren<QObject*>())
            count += object->inherits("QQmlTimer") && object->property("running").toBool() ? 1 : 0;
        return count;
    }

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(&window, key, modifiers);
    }
    void send(QEvent::Type type, Qt::Key key, bool repeated) {
        QKeyEvent event(type, key, Qt::NoModifier, {}, repeated);
        QCoreApplication::sendEvent(&window, &event);
    }
    void click(const QQuickItem& item) {
        QTest::mouseClick(&window, Qt::LeftButton, {}, placeOf(item).center().toPoint());
    }
    QQuickItem& button(const QString& text) {
        for (auto* each : shownOfType("PushButton")) {
            if (each->property("text").toString() == text)
                return *each;
        }
        throw std::runtime_error("no button " + text.toStdString());
    }
    QString focused() {
        const auto* item = window.activeFocusItem();
        if (!item)
            return {};
        const auto caption = item->property("caption").toString();
        return caption.isEmpty() ? item->property("text").toString() : caption;
    }
    /// What the keyboard gets to by Tab, from where it is until it is there again.
    QStringList tabbed() {
        QStringList reached{focused()};
        for (press(Qt::Key_Tab); focused() != reached.first() && reached.size() < 20; press(Qt::Key_Tab))
            reached << focused();
        return reached;
    }
};

TEST_F(OnboardingViews, enter_goesOnFromAnywhere) {
    make();
    show();
    EXPECT_EQ(focused(), "Get started");
    press(Qt::Key_Return);
    EXPECT_EQ(model->step(), Step::EverywhereStep);
    press(Qt::Key_Enter);
    EXPECT_EQ(model->step(), Step::PermissionsStep);
    press(Qt::Key_Return);
    EXPECT_EQ(model->step(), Step::DownloadStep);
    press(Qt::Key_Return); // which waits for the model
    EXPECT_EQ(model->step(), Step::DownloadStep);
    finishDownload();
    EXPECT_EQ(focused(), "Continue"); // it has the keyboard again
    press(Qt::Key_Return);
    EXPECT_EQ(model->step(), Step::HotkeyStep);
}

TEST_F(OnboardingViews, backKey_goesBack) {
    make();
    show();
    press(Qt::Key_Return);
    press(Qt::Key_Left, Qt::AltModifier);
    EXPECT_EQ(model->step(), Step::WelcomeStep);
}

TEST_F(OnboardingViews, tab_reachesEverythingOfAStep) {
    make();
    show();
    EXPECT_EQ(tabbed(), QStringList({"Get started"}));
    press(Qt::Key_Return);
    EXPECT_EQ(tabbed(), QStringList({"Continue", "Back"}));
    finishDownload();
    goTo(Step::HotkeyStep);
    EXPECT_EQ(tabbed().size(), 7);
    goTo(Step::DemoStep);
    EXPECT_EQ(tabbed(), QStringList({"Finish", "Hold to talk", "Back"}));
    setMissing(true, true);
    EXPECT_EQ(tabbed().size(), 4);
}

TEST_F(OnboardingViews, mouse_leadsThroughEveryStep) {
    make();
    show();
    finishDownload();
    click(button("Get started"));
    for (int step = 1; step < model->stepCount() - 1; ++step) {
        EXPECT_EQ(model->step(), step);
        layOut(*view);
        click(button("Continue"));
    }
    layOut(*view);
    click(button("Back"));
    EXPECT_EQ(model->step(), Step::HotkeyStep);
}

TEST_F(OnboardingViews, question_keepsTheKeyboardUntilItIsAnswered) {
    setMissing(true, false);
    make();
    show();
    goTo(Step::PermissionsStep);
    press(Qt::Key_Return);
    ASSERT_TRUE(model->asksToSkip());
    const QStringList answers{"Open System Settings", "Continue anyway", "Go back"};
    EXPECT_EQ(tabbed(), answers);
    press(Qt::Key_Backtab);
    EXPECT_EQ(focused(), "Go back");
    press(Qt::Key_Left, Qt::AltModifier); // nothing else can be used
    EXPECT_EQ(model->step(), Step::PermissionsStep);
    press(Qt::Key_Escape);
    EXPECT_FALSE(model->asksToSkip());
    EXPECT_EQ(focused(), "Continue");
    press(Qt::Key_Return);
    press(Qt::Key_Tab);
    press(Qt::Key_Return);
    EXPECT_EQ(model->step(), Step::DownloadStep);
}

TEST_F(OnboardingViews, hotkeyRow_isChosenByMouseAndKeyboard) {
    make();
    show();
    finishDownload();
    goTo(Step::HotkeyStep);
    layOut(*view);
    click(*shownOfType("HotkeyRow").at(3));
    EXPECT_EQ(model->hotkey()->selectedId(), "caps");
    press(Qt::Key_Up);
    press(Qt::Key_Space);
    EXPECT_EQ(model->hotkey()->selectedId(), "default");
    press(Qt::Key_Up);
    press(Qt::Key_Return);
    EXPECT_EQ(model->hotkey()->selectedId(), "fn");
    EXPECT_TRUE(isShown(model->hotkey()->fnWarning()));
    EXPECT_EQ(model->step(), Step::HotkeyStep);
}

TEST_F(OnboardingViews, keyThatIsHeldOnAHotkeyRow_choosesItOnce) {
    make();
    show();
    finishDownload();
    goTo(Step::HotkeyStep);
    layOut(*view);
    auto& row = *shownOfType("HotkeyRow").at(3);
    row.forceActiveFocus(Qt::TabFocusReason);
    const QSignalSpy clicked(&row, SIGNAL(clicked()));
    send(QEvent::KeyPress, Qt::Key_Space, false);
    send(QEvent::KeyPress, Qt::Key_Space, false); // a server that sends no releases between marks no repeat
    EXPECT_EQ(clicked.size(), 1);
    send(QEvent::KeyRelease, Qt::Key_Space, false);
    send(QEvent::KeyPress, Qt::Key_Space, false);
    EXPECT_EQ(clicked.size(), 2);
}

TEST_F(OnboardingViews, holdButton_recordsWhileTheMouseHoldsIt) {
    make();
    show();
    finishDownload();
    goTo(Step::DemoStep);
    layOut(*view);
    const auto place = placeOf(*shownOfType("HoldButton").at(0)).center().toPoint();
    QTest::mousePress(&window, Qt::LeftButton, {}, place);
    EXPECT_EQ(model->demo()->state(), "recording");
    QTest::mouseRelease(&window, Qt::LeftButton, {}, place);
    EXPECT_EQ(model->demo()->state(), "transcribing");
    actor.runToRest(seconds(10));
    layOut(*view);
    EXPECT_EQ(model->demo()->state(), "done");
}

TEST_F(OnboardingViews, holdButton_recordsWhileTheSpaceBarIsHeld) {
    make();
    show();
    finishDownload();
    goTo(Step::DemoStep);
    press(Qt::Key_Tab);
    EXPECT_EQ(focused(), "Hold to talk");
    send(QEvent::KeyPress, Qt::Key_Space, false);
    for (int repeat = 0; repeat < 3; ++repeat) {
        send(QEvent::KeyRelease, Qt::Key_Space, true);
        send(QEvent::KeyPress, Qt::Key_Space, true);
    }
    EXPECT_EQ(model->demo()->state(), "recording");
    EXPECT_EQ(microphone.starts, 1);
    send(QEvent::KeyRelease, Qt::Key_Space, false);
    EXPECT_EQ(model->demo()->state(), "transcribing");
}

TEST_F(OnboardingViews, holdButtonThatLosesTheKeyboard_letsGo) {
    make();
    show();
    finishDownload();
    goTo(Step::DemoStep);
    press(Qt::Key_Tab);
    send(QEvent::KeyPress, Qt::Key_Space, false);
    press(Qt::Key_Tab);
    EXPECT_EQ(model->demo()->state(), "transcribing");
}

TEST_F(OnboardingViews, whatCannotBeSeen_standsStill) {
    make();
    EXPECT_EQ(ticking(), 0);
    view->setProperty("moves", true);
    EXPECT_GT(ticking(), 0);
    for (int step = 0; step < model->stepCount(); ++step) {
        goTo(step);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); // the step before
        view->setProperty("moves", false);
        EXPECT_EQ(ticking(), 0) << step;
        view->setProperty("moves", true);
    }
    // At rest nothing moves on the step that waits for the user either.
    EXPECT_EQ(ticking(), 0);
}

TEST_F(OnboardingViews, wizardLeftOpen_comesToRest) {
    make();
    view->setProperty("moves", true);
    shownOfType("WelcomeStep").at(0)->setProperty("rounds", 6);
    EXPECT_EQ(ticking(), 0);
    goTo(Step::EverywhereStep);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); // the step before
    EXPECT_GT(ticking(), 0);
    shownOfType("EverywhereStep").at(0)->setProperty("shown", 13);
    EXPECT_EQ(ticking(), 0);
}

} // namespace
