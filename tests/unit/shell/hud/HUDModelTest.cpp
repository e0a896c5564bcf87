// SPDX-License-Identifier: MIT
#include "shell/hud/HUDModel.h"

#include "InMemoryPreferenceStore.h"
#include "persistence/AppSettings.h"

#include <gtest/gtest.h>

using namespace talvera;
using namespace talvera::test;
using State = DictationHUDState;

namespace {

class HUDModelTest : public testing::Test {
protected:
    InMemoryPreferenceStore store;
    AppSettings settings{store};
    StateHolder holder;
    HUDModel model{holder, settings};
};

TEST_F(HUDModelTest, state_isNamedAsItsCase) {
    EXPECT_EQ(model.state(), "hidden");
    holder.state.set(State::Listening{});
    EXPECT_EQ(model.state(), "listening");
    holder.state.set(State::Transcribing{});
    EXPECT_EQ(model.state(), "transcribing");
    holder.state.set(State::Translating{"French"});
    EXPECT_EQ(model.state(), "translating");
    holder.state.set(State::Notice{"n", State::NoticeTone::Info});
    EXPECT_EQ(model.state(), "notice");
    holder.state.set(State::PermissionRequired{State::PermissionKind::Microphone});
    EXPECT_EQ(model.state(), "permissionRequired");
}

TEST_F(HUDModelTest, listening_countsFromItsDate) {
    holder.state.set(State::Listening{WallTime(std::chrono::milliseconds(1234567))});
    EXPECT_EQ(model.startedAt(), 1234567);
    EXPECT_EQ(model.recordingTime(61'900), "01:01");
}

TEST_F(HUDModelTest, notice_hasTheSymbolOfItsTone) {
    holder.state.set(State::Notice{"n", State::NoticeTone::Info});
    EXPECT_FALSE(model.warns());
    EXPECT_EQ(model.noticeSymbol(), "info.circle.fill");
    holder.state.set(State::Notice{"n", State::NoticeTone::Warn});
    EXPECT_TRUE(model.warns());
    EXPECT_EQ(model.noticeSymbol(), "exclamationmark.triangle.fill");
}

TEST_F(HUDModelTest, targetOff_showsNoIndicator) {
    settings.targetLanguageCode.set("off");
    EXPECT_EQ(model.indicator(), "");
}

TEST_F(HUDModelTest, languagesChange_theIndicatorFollowsAtOnce) {
    int changes = 0;
    QObject::connect(&model, &HUDModel::languagesChanged, [&] { ++changes; });
    settings.sourceLanguageCode.set("auto");
    settings.targetLanguageCode.set("pt-BR");
    EXPECT_EQ(changes, 2);
    EXPECT_EQ(model.indicator(), "AUTO → PT");
}

TEST_F(HUDModelTest, card_isNamedToScreenReadersAndKeepsItsWordsWhileItFades) {
    holder.state.set(State::PermissionRequired{State::PermissionKind::Accessibility});
    EXPECT_EQ(model.spoken(), "Accessibility access needed");
    holder.state.set(State::Hidden{});
    EXPECT_EQ(model.spoken(), "");
    EXPECT_EQ(model.cardTitle(), "Accessibility access needed");
}

TEST_F(HUDModelTest, buttons_runTheHoldersActions) {
    std::string done;
    holder.permissionDismiss = [&] { done += "dismissed "; };
    holder.permissionOpenSettings = [&] { done += "opened"; };
    model.dismissPermission();
    model.openPermissionSettings();
    EXPECT_EQ(done, "dismissed opened");
}

TEST_F(HUDModelTest, buttonsWithoutAction_doNothing) {
    model.dismissPermission();
    model.openPermissionSettings();
}

TEST_F(HUDModelTest, level_isTheHolders) {
    int changes = 0;
    QObject::connect(&model, &HUDModel::levelChanged, [&] { ++changes; });
    holder.level.set(0.25F);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(model.level(), 0.25F);
}

} // namespace
