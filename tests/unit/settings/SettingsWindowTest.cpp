// SPDX-License-Identifier: MIT
#include "shell/settings/SettingsWindow.h"
#include "SettingsFixture.h"

using namespace talvera;
using namespace talvera::test;

namespace {

class SettingsWindowTest : public SettingsFixture {
protected:
    class CountedWindow final : public FramedWindow {
    public:
        explicit CountedWindow(SettingsWindowTest& owner)
            : m_owner(owner) {
            m_owner.shown = this;
        }
        ~CountedWindow() override { m_owner.shown = nullptr; }
        void bringToFront() override { ++m_owner.toFront; }

    private:
        SettingsWindowTest& m_owner;
    };

    void close() {
        shown->onClosed();
        actor.settle();
    }

    CountedWindow* shown = nullptr;
    int toFront = 0;
    SettingsWindow window{
        actor,
        {.model = [this] { return std::make_unique<SettingsModel>(modelParts); },
         .window = [this](SettingsModel&) { return std::make_unique<CountedWindow>(*this); }}};
};

TEST_F(SettingsWindowTest, window_beginsWithTheFirstSection) {
    EXPECT_EQ(window.model(), nullptr);
    window.show();
    ASSERT_TRUE(shown);
    EXPECT_EQ(toFront, 1);
    EXPECT_EQ(window.model()->section(), "general");
}

TEST_F(SettingsWindowTest, sectionAskedFor_isShownByANewWindowAndByAnOpenOne) {
    window.show(SettingsSectionID::Ai);
    EXPECT_EQ(window.model()->section(), "ai");
    const auto* const first = shown;
    window.show(SettingsSectionID::Hotkey);
    EXPECT_EQ(shown, first);
    EXPECT_EQ(toFront, 2);
    EXPECT_EQ(window.model()->section(), "hotkey");
    window.show();
    EXPECT_EQ(window.model()->section(), "hotkey") << "nothing else was asked for";
}

TEST_F(SettingsWindowTest, notification_switchesTheSectionOfAnOpenWindow) {
    window.switchToSection(SettingsSectionID::Privacy);
    EXPECT_EQ(shown, nullptr);
    window.show();
    EXPECT_EQ(window.model()->section(), "general");
    window.switchToSection(SettingsSectionID::Privacy);
    EXPECT_EQ(window.model()->section(), "privacy");
    EXPECT_EQ(toFront, 1);
}

TEST_F(SettingsWindowTest, closedWindow_isGoneInALaterTurnAndAnewOneBeginsAfresh) {
    window.show(SettingsSectionID::Language);
    shown->onClosed();
    EXPECT_TRUE(shown) << "its own button may have closed it";
    EXPECT_EQ(window.model(), nullptr);
    actor.settle();
    EXPECT_EQ(shown, nullptr);
    window.show();
    EXPECT_EQ(window.model()->section(), "general");
}

TEST_F(SettingsWindowTest, programThatEndsBeforeThatTurn_takesTheWindowWithIt) {
    {
        SettingsWindow closing{
            actor,
            {.model = [this] { return std::make_unique<SettingsModel>(modelParts); },
             .window = [this](SettingsModel&) { return std::make_unique<CountedWindow>(*this); }}};
        closing.show();
        shown->onClosed();
        EXPECT_TRUE(shown);
    }
    EXPECT_EQ(shown, nullptr);
    actor.settle();
}

} // namespace
