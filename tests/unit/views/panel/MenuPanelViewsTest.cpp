// SPDX-License-Identifier: MIT
// What the panel's views make of the state, without a screen.
#include "MenuPanelViews.h"
#include "ShippedCatalogs.h"
#include "shell/texts/languageName.h"
#include "text/Localization.h"

using namespace talvera;
using namespace talvera::test;
using State = MenuBarController::State;

namespace {

class TranslatedPanel : public MenuPanelViews, public testing::WithParamInterface<std::string> {
protected:
    SpokenLanguage language{QString::fromStdString(GetParam())};
};

INSTANTIATE_TEST_SUITE_P(Each, TranslatedPanel, testing::ValuesIn(shippedTranslations()), languageOfTest);

TEST_P(TranslatedPanel, everyState_isShownWhole) {
    for (const auto state : {State::Idle, State::Recording, State::Transcribing, State::Error}) {
        for (const bool tap : {false, true}) {
            menuBar.state.set(state);
            settings.hotkeyTapToToggle.set(tap);
            open();
            expectWholeTexts();
        }
    }
}

TEST_P(TranslatedPanel, banner_isShownWhole) {
    microphone.current = AuthorizationStatus::Denied;
    access.trusted = false;
    open();
    EXPECT_TRUE(shownText(model->bannerTitle()));
    expectWholeTexts();
}

TEST_P(TranslatedPanel, missingLanguageModel_isToldWhole) {
    for (const auto reason : {LanguageModel::UnavailableReason::DeviceNotEligible,
                              LanguageModel::UnavailableReason::IntelligenceOff,
                              LanguageModel::UnavailableReason::ModelNotReady}) {
        languageModel.reason = reason;
        open();
        expectWholeTexts();
    }
}

TEST_F(MenuPanelViews, computerWithoutLanguageModel_isOneCalmLine) {
    languageModel.reason = LanguageModel::UnavailableReason::DeviceNotEligible;
    open();
    EXPECT_TRUE(shownText("Needs a language model, and this computer has none"));
    const auto symbols = itemsBelow(*view, [](QQuickItem& item) {
        return item.isVisible() && item.property("name").toString() == "exclamationmark.triangle.fill";
    });
    EXPECT_TRUE(symbols.empty());
}

TEST_F(MenuPanelViews, somethingMissing_noGreenDotAndARuleBelowTheBanner) {
    const auto green = views.theme().property("good").value<QColor>();
    open();
    EXPECT_EQ(ofType("StatusOrb").property("tone").value<QColor>(), green);
    const auto rules = shownOfType("MenuDivider").size();
    access.trusted = false;
    open();
    EXPECT_NE(ofType("StatusOrb").property("tone").value<QColor>(), green);
    EXPECT_EQ(shownOfType("MenuDivider").size(), rules + 1);
}

TEST_F(MenuPanelViews, dictationBegins_theRowsStayWhereTheyAre) {
    open();
    const auto before = ofType("LanguagePickerRow").y();
    menuBar.state.set(State::Recording);
    layOut(*view);
    EXPECT_EQ(ofType("LanguagePickerRow").y(), before);
}

TEST_F(MenuPanelViews, longErrorMessage_isWrapped) {
    menuBar.lastErrorMessage.set(
        "The microphone of the Donaudampfschifffahrtselektrizitätenhauptbetriebswerk "
        "can't be opened");
    menuBar.state.set(State::Error);
    open();
    EXPECT_TRUE(shownText(*menuBar.lastErrorMessage.get()));
    expectWholeTexts();
}

TEST_F(MenuPanelViews, hugeStatistics_getSmallerRatherThanCut) {
    open();
    stats.lastWeekStats.set({99'999LL * 3600, 12'345'678'901});
    EXPECT_TRUE(shownText("12345678901"));
    expectWholeTexts();
}

TEST_F(MenuPanelViews, captionOfTheDictations_counts) {
    const SpokenLanguage german("de");
    open();
    EXPECT_TRUE(shownText("DIKTATE"));
    stats.lastWeekStats.set({60, 1});
    EXPECT_TRUE(shownText("DIKTAT"));
}

TEST_F(MenuPanelViews, onlyTheOrbOfAStateThatLasts_moves) {
    const auto moving = [this] {
        return itemsBelow(*view,
                          [](QQuickItem& item) {
                              return item.isVisible() &&
                                     (item.property("pulse").isValid() || item.property("turns").toBool());
                          })
            .size();
    };
    open();
    EXPECT_EQ(moving(), 0U);
    menuBar.state.set(State::Recording);
    EXPECT_EQ(moving(), 1U);
    menuBar.state.set(State::Transcribing);
    EXPECT_EQ(moving(), 1U);
    menuBar.state.set(State::Error);
    EXPECT_EQ(moving(), 0U);
}

TEST_F(MenuPanelViews, arrowKeys_reachEveryRow) {
    open();
    show();
    QStringList reached;
    for (int step = 0; step < 5; ++step) {
        press(Qt::Key_Down);
        reached << focused();
    }
    EXPECT_EQ(reached,
              QStringList({"Translate to", "AI Cleanup", "Settings…", "Check for Updates…", "Quit Talvera"}));
    press(Qt::Key_Up);
    EXPECT_EQ(focused(), "Check for Updates…");
    EXPECT_FALSE(isListOpen());
}

TEST_F(MenuPanelViews, rowThatGetsTheKeyboard_comesIntoSight) {
    open();
    view->setHeight(200);
    show();
    for (int step = 0; step < 5; ++step)
        press(Qt::Key_Down);
    const auto& quit = *window.activeFocusItem();
    EXPECT_EQ(focused(), "Quit Talvera");
    EXPECT_LE(quit.mapToItem(&*view, QPointF(0, quit.height())).y(), 200);
}

TEST_F(MenuPanelViews, shortcuts_act) {
    open();
    QStringList done;
    model->onQuit = [&] { done << "quit"; };
    model->onSettings = [&] { done << "settings"; };
    show();
    press(Qt::Key_Comma, Qt::ControlModifier);
    openList(); // with the keyboard in its search
    press(Qt::Key_Q, Qt::ControlModifier);
    EXPECT_EQ(done, QStringList({"settings", "quit"}));
}

TEST_F(MenuPanelViews, searchForUpdates_isShownInItsRow) {
    open();
    Published<bool> isChecking{false};
    model->followUpdateCheck(isChecking);
    auto& row = *allOfType("SimpleMenuItem").at(1);
    const double height = row.height();
    const auto spins = [&row] {
        const auto spinners =
            itemsBelow(row, [](QQuickItem& item) { return item.property("turns").toBool(); });
        return spinners.size() == 1;
    };
    EXPECT_FALSE(spins());
    EXPECT_FALSE(shownText("Checking for Updates…"));
    isChecking.set(true);
    EXPECT_TRUE(spins());
    EXPECT_TRUE(shownText("Checking for Updates…"));
    EXPECT_EQ(row.height(), height);
    isChecking.set(false);
    EXPECT_FALSE(spins());
    EXPECT_FALSE(shownText("Checking for Updates…"));
}

TEST_F(MenuPanelViews, contentThatFits_doesNotScroll) {
    settings.aiCleanupEnabled.set(true);
    open();
    const auto flickable =
        itemsBelow(*view, [](QQuickItem& item) { return item.inherits("QQuickFlickable"); });
    ASSERT_EQ(flickable.size(), 1U);
    EXPECT_FALSE(flickable.front()->property("interactive").toBool());
    EXPECT_FALSE(ofType("ScrollMark").isVisible());
    view->setHeight(300);
    EXPECT_TRUE(flickable.front()->property("interactive").toBool());
    EXPECT_TRUE(ofType("ScrollMark").isVisible());
}

TEST_P(TranslatedPanel, languageThatIsNotInstalled_keepsItsWholeName) {
    languageModel.languages = {"es"};
    open();
    view->setHeight(1000); // all rows are there
    openList();
    const auto rows = allOfType("LanguageRow");
    EXPECT_EQ(rows.size(), 18U);
    for (auto* row : rows) {
        for (auto* text : itemsBelow(*row, [](QQuickItem& item) { return item.inherits("QQuickText"); }))
            EXPECT_FALSE(text->property("truncated").toBool())
                << qPrintable(text->property("text").toString());
    }
}

TEST_P(TranslatedPanel, longestToggle_breaksNeitherWordNorKey) {
    model.reset();
    setToggle(HotkeyBinding::chord(0x1E0000, VirtualKey::Space));
    settings.targetLanguageCode.set("zh-TW");
    open();
    layOut(*view);
    view->setHeight(view->property("fittingHeight").toInt());
    expectWholeTexts();
    auto* title = shownText(localized("menu.translateTo", ""));
    ASSERT_TRUE(title);
    EXPECT_EQ(title->property("lineCount"), 1);
    auto* cap = shownText(model->toggleShortcut());
    ASSERT_TRUE(cap);
    const auto capPlace = cap->mapRectToScene(QRectF(QPointF(), cap->size()));
    for (const QQuickItem* words : {title, shownText(languageName("zh-TW", {}))}) {
        ASSERT_TRUE(words);
        const QSizeF written(words->property("contentWidth").toDouble(), words->height());
        EXPECT_FALSE(words->mapRectToScene(QRectF(QPointF(), written)).intersects(capPlace));
    }
}

TEST_F(MenuPanelViews, pointerThatRests_bringsWordsForWhatHasNone) {
    setToggle(HotkeyBinding::chord(0xC0000, VirtualKey::T));
    open();
    layOut(*view);
    show();
    EXPECT_TRUE(tipComes(ofType("StatusOrb"), model->orbLabel()));
    EXPECT_TRUE(tipComes(*shownText(model->toggleShortcut()), "Turns translation on and off"));
    EXPECT_TRUE(tipComes(*shownText("THIS WEEK"), "Time saved in the last seven days"));
    EXPECT_TRUE(tipComes(*allOfType("MenuDivider").front(), ""));
}

TEST_F(MenuPanelViews, bannerWhileOpen_asksForMoreHeight) {
    open();
    const int before = view->property("fittingHeight").toInt();
    access.trusted = false;
    readiness.refresh();
    layOut(*view);
    EXPECT_GT(view->property("fittingHeight").toInt(), before + 40);
}

} // namespace
