// SPDX-License-Identifier: MIT
// Whether the wizard's texts are shown whole, in every language and state.
#include "OnboardingViewFixture.h"
#include "ShippedCatalogs.h"
#include "text/Localization.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

using namespace talvera;
using namespace talvera::test;

namespace {

class OnboardingTexts : public OnboardingViewFixture {
protected:
    void expectWholeTexts(const char* state) {
        layOut(*view);
        for (const auto* text : shownTexts())
            expectWhole(*text, state);
        for (const auto* cap : shownOfType("KbdCap")) {
            const auto rows = shownOfType("HotkeyRow");
            EXPECT_TRUE(rows.empty() ||
                        std::any_of(rows.begin(), rows.end(),
                                    [&](const auto* row) {
                                        return placeOf(*row).adjusted(200, 0, -12, 0).contains(placeOf(*cap));
                                    }))
                << state << ": a cap stands out of its row";
        }
        for (const auto* words : shownOfType("Typewriter"))
            EXPECT_LE(words->implicitHeight(), words->height()) << state << ": a sample";
        if (const auto* hint = shownText(model->hint())) {
            EXPECT_EQ(shownOfType("ProgressDot").size(), 6U) << state;
            for (const auto* button : shownOfType("PushButton"))
                EXPECT_FALSE(placeOf(*button).intersects(placeOf(*hint))) << state << ": the hint";
        }
        const auto navigation = placeOf(*shownOfType("NavigationRow").at(0));
        for (const auto& type :
             {"BenefitPermissionCard", "HotkeyRow", "HotkeyWarning", "FileRow", "HoldButton", "NoteLine"}) {
            for (const auto* item : shownOfType(type))
                EXPECT_FALSE(placeOf(*item).intersects(navigation)) << state << ": " << type;
        }
    }
    /// Every state of every step.
    void expectWholeTextsEverywhere() {
        make();
        expectWholeTexts("welcome");
        goTo(Step::EverywhereStep);
        expectWholeTexts("everywhere");
        goTo(Step::PermissionsStep);
        expectWholeTexts("granted");
        for (const auto denial :
             {MicrophoneLack::Microphone, MicrophoneLack::Server, MicrophoneLack::Permission}) {
            permission.denial = denial;
            for (const auto lack : {SessionLack::Permission, SessionLack::KnownSession,
                                    SessionLack::KeyPosting, SessionLack::ActiveWindow}) {
                setMissing(false, false);
                access.lack = lack;
                setMissing(true, true);
                expectWholeTexts("missing");
            }
        }
        settingsPanels.hasPanels = false;
        controller.openMicrophoneSettings();
        expectWholeTexts("advice");
        settingsPanels.hasPanels = true;
        controller.pressPrimary();
        expectWholeTexts("question");
        controller.dismissQuestion();
        goTo(Step::DemoStep);
        expectWholeTexts("demo without permissions");
        setMissing(false, false);
        goTo(Step::DownloadStep);
        for (const auto& phase :
             {Phase(Phase::Downloading), Phase(Phase::Verifying), Phase(Phase::Extracting),
              Phase::failed(localized(
                  "download.failed.notTrusted",
                  "No secure connection: the server could not prove who it is. In a hotel or a café, sign "
                  "in to the network first, and check the date of your computer.")),
              Phase(Phase::Done)}) {
            downloader.phase.set(phase);
            expectWholeTexts("download");
            for (const auto* button : shownOfType("PushButton"))
                EXPECT_FALSE(placeOf(*button).intersects(placeOf(*shownOfType("FileRow").at(0))));
        }
        goTo(Step::HotkeyStep);
        for (const auto& preset : model->hotkey()->presets()) {
            model->hotkey()->choose(preset.value<HotkeyChoice>().id);
            expectWholeTexts("hotkey");
        }
        settings.hotkeyBinding.set(HotkeyBinding::chord(0x1E0000, VirtualKey::Space));
        expectWholeTexts("own hotkey");
        hotkey.watchResult().set(WatchResult::ChordTaken);
        expectWholeTexts("hotkey of another program");
        EXPECT_EQ(shownOfType("NoteLine").size(), 0U); // its row has no room for it
        EXPECT_TRUE(isShown(recorder.refusal()));
        hotkey.watchResult().set(WatchResult::Unavailable);
        expectWholeTexts("hotkey that no keyboard has");
        hotkey.watchResult().set(std::nullopt);
        recorder.record();
        hotkey.presses().set(1);
        expectWholeTexts("hotkey that is set already");
        EXPECT_TRUE(isShown(recorder.boundChord()));
        recorder.cancel();
        goTo(Step::DemoStep);
        for (const bool tapped : {false, true}) {
            settings.hotkeyTapToToggle.set(tapped);
            for (const auto kind : {Demo::Idle, Demo::Recording, Demo::Transcribing, Demo::Done}) {
                controller.demoPhase.set({kind});
                expectWholeTexts("demo");
            }
        }
        controller.demoPhase.set(DemoPhase::error(
            localized("onboarding.demo.error.microphone",
                      "The microphone can't be opened. Plug one in, or allow it in the sound settings.")));
        expectWholeTexts("demo's error");
    }
};

TEST_F(OnboardingTexts, everyStateInEnglish_isShownWhole) {
    expectWholeTextsEverywhere();
}

class TranslatedWizard : public OnboardingTexts, public testing::WithParamInterface<std::string> {
protected:
    SpokenLanguage language{QString::fromStdString(GetParam())};
};

INSTANTIATE_TEST_SUITE_P(Each, TranslatedWizard, testing::ValuesIn(shippedTranslations()), languageOfTest);

TEST_P(TranslatedWizard, everyState_isShownWhole) {
    expectWholeTextsEverywhere();
}

} // namespace
