// SPDX-License-Identifier: MIT
// What the panel's views make of the state, without a screen.
#include "PanelFixture.h"
#include "ShippedCatalogs.h"
#include "itemsBelow.h"
#include "platform/desktop/DesktopAppearance.h"
#include "shell/panel/MenuPanelModel.h"
#include "shell/texts/languageName.h"
#include "text/Localization.h"
#include "views/ViewEngine.h"

#include <QQuickWindow>
#include <QTest>

#include <algorithm>
#include <optional>

using namespace talvera;
using namespace talvera::test;
using State = MenuBarController::State;

namespace {

class MenuPanelViews : public PanelTest {
protected:
    MenuPanelViews() { languageModel.reason.reset(); }

    /// Makes the view as the panel does when it opens.
    void open() {
        readiness.refresh();
        view.reset();
        model.emplace(
            MenuPanelModel::Parts{menuBar, settings, stats, readiness, languageModel, layout, toggle});
        view = views.create("panel/MenuPanelView", {{"panel", QVariant::fromValue<QObject*>(&*model)}});
        view->setParentItem(window.contentItem());
        view->setWidth(300);
        layOut(*view);
        view->setHeight(view->property("fittingHeight").toInt());
    }

    void setToggle(const HotkeyBinding& binding) {
        settings.translateToggleBinding.set(binding);
        toggle.setBinding(binding);
        toggle.install();
    }

    static void layOut(QQuickItem& item) {
        for (auto* child : item.childItems())
            layOut(*child);
        item.ensurePolished();
    }

    std::vector<QQuickItem*> shownTexts() {
        return itemsBelow(*view, [](QQuickItem& item) {
            return item.inherits("QQuickText") && item.isVisible() &&
                   !item.property("text").toString().isEmpty();
        });
    }
    QQuickItem* shownText(const QString& words) {
        for (auto* text : shownTexts()) {
            if (text->property("text") == words)
                return text;
        }
        return nullptr;
    }
    void expectWholeTexts() {
        for (auto* text : shownTexts()) {
            EXPECT_FALSE(text->property("truncated").toBool())
                << qPrintable(text->property("text").toString());
            const auto place = text->mapRectToItem(&*view, QRectF(QPointF(), text->size()));
            EXPECT_TRUE(QRectF(0, 0, 300, view->height()).contains(place))
                << qPrintable(text->property("text").toString());
        }
    }
    std::vector<QQuickItem*> allOfType(const QString& type) {
        return itemsBelow(*view, [&](QQuickItem& item) {
            return QString::fromLatin1(item.metaObject()->className()).startsWith(type + "_QML");
        });
    }
    QQuickItem& ofType(const QString& type) { return *allOfType(type).at(0); }
    std::ptrdiff_t shownOfType(const QString& type) {
        const auto all = allOfType(type);
        return std::count_if(all.begin(), all.end(), [](auto* item) { return item->isVisible(); });
    }

    /// Shows the window, so that keys and clicks arrive.
    void show() {
        window.resize(300, static_cast<int>(view->height()));
        window.show();
        window.requestActivate();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        view->forceActiveFocus();
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(&window, key, modifiers);
    }
    void click(QPointF place) { QTest::mouseClick(&window, Qt::LeftButton, {}, place.toPoint()); }
    static QPointF centreOf(const QQuickItem& item) {
        return item.mapToScene(QPointF(item.width() / 2, item.height() / 2));
    }
    /// The accessible name of what has the keyboard.
    QString focused() {
        const auto* item = window.activeFocusItem();
        return item ? item->property("text").toString() : QString();
    }
    bool isListOpen() { return ofType("LanguagePickerRow").property("listOpen").toBool(); }
    /// The tip that is open, if there is one.
    QString openTip() {
        for (auto* tip : allOfType("Tip")) {
            if (tip->property("open").toBool())
                return tip->property("text").toString();
        }
        return {};
    }
    bool tipComes(const QQuickItem& item, const QString& words) {
        // As a hand does it: the first move comes to the row, the next to what lies on it.
        for (const QPoint step : {QPoint(-2, 0), QPoint(-1, 0), QPoint(0, 0)})
            QTest::mouseMove(&window, centreOf(item).toPoint() + step);
        return QTest::qWaitFor([&] { return openTip() == words; });
    }
    /// Opens the list of languages.
    QQuickItem& openList() {
        ofType("LanguagePickerRow").setProperty("listOpen", true);
        layOut(*view);
        return ofType("LanguageList");
    }
    static QQuickItem& rowsOf(QQuickItem& list) {
        return *itemsBelow(list, [](QQuickItem& item) { return item.inherits("QQuickListView"); }).at(0);
    }

    DesktopAppearance appearance;
    ViewEngine views{appearance};
    QQuickWindow window;
    std::optional<MenuPanelModel> model;
    std::unique_ptr<QQuickItem> view;
};

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
    const auto rules = shownOfType("MenuDivider");
    access.trusted = false;
    open();
    EXPECT_NE(ofType("StatusOrb").property("tone").value<QColor>(), green);
    EXPECT_EQ(shownOfType("MenuDivider"), rules + 1);
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

TEST_F(MenuPanelViews, languageList_showsWholeRowsAndTheChosenOne) {
    settings.targetLanguageCode.set("nl");
    languageModel.languages = {"nl"};
    open();
    auto& list = openList();
    auto& rows = rowsOf(list);
    const double rowHeight = list.property("rowHeight").toDouble();
    EXPECT_EQ(std::fmod(rows.height(), rowHeight), 0);
    EXPECT_EQ(
        std::fmod(rows.property("contentY").toDouble() - rows.property("originY").toDouble(), rowHeight), 0);
    const double chosen =
        rows.property("currentIndex").toInt() * rowHeight - rows.property("contentY").toDouble();
    EXPECT_GE(chosen, 0);
    EXPECT_LE(chosen, rows.height() - rowHeight);
    EXPECT_LE(list.y() + list.height(), view->height());
}

TEST_F(MenuPanelViews, searchWithoutMatch_saysSoWithinTheList) {
    open();
    auto& list = openList();
    model->targetLanguages()->setSearch("klingon");
    layOut(*view);
    auto* const remark = shownText("No such language");
    ASSERT_TRUE(remark);
    auto& rows = rowsOf(list);
    const auto place = remark->mapRectToItem(&rows, QRectF(QPointF(), remark->size()));
    EXPECT_TRUE(QRectF(QPointF(), rows.size()).contains(place));
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

TEST_F(MenuPanelViews, languageRow_opensByReturnSpaceAndAltDown) {
    open();
    show();
    for (const auto& [key, modifiers] :
         {std::pair{Qt::Key_Return, Qt::NoModifier}, std::pair{Qt::Key_Space, Qt::NoModifier},
          std::pair{Qt::Key_Down, Qt::AltModifier}}) {
        ofType("LanguagePickerRow").forceActiveFocus();
        press(key, modifiers);
        EXPECT_TRUE(isListOpen()) << key;
        ofType("LanguagePickerRow").setProperty("listOpen", false);
    }
}

TEST_F(MenuPanelViews, clickBesideTheOpenList_closesItAndDoesNothingElse) {
    open();
    QStringList done;
    model->onQuit = [&] { done << "quit"; };
    model->onSettings = [&] { done << "settings"; };
    show();
    const auto rows = allOfType("SimpleMenuItem");
    for (const auto& place :
         {QPointF(3, view->height() - 3), centreOf(ofType("StatusHeader")), QPointF(2, 2)}) {
        openList();
        click(place);
        EXPECT_FALSE(isListOpen());
    }
    openList();
    const auto last = centreOf(*rows.back());
    click(QPointF(2, last.y())); // beside the list, over the row that quits
    EXPECT_FALSE(isListOpen());
    EXPECT_TRUE(done.isEmpty());
    click(last);
    EXPECT_EQ(done, QStringList("quit"));
}

TEST_F(MenuPanelViews, keysInTheOpenList_stayInItUntilItCloses) {
    open();
    show();
    const auto& list = openList();
    const auto isInside = [&] { return list.isAncestorOf(window.activeFocusItem()); };
    const auto pressAll = [&](std::initializer_list<Qt::Key> keys) {
        for (const auto key : keys) {
            press(key);
            EXPECT_TRUE(isInside()) << key;
        }
    };
    pressAll({Qt::Key_Down, Qt::Key_Up, Qt::Key_Space, Qt::Key_Tab});
    EXPECT_EQ(focused(), "Add more languages in System Settings");
    pressAll({Qt::Key_Down, Qt::Key_Space, Qt::Key_Down, Qt::Key_Backtab, Qt::Key_Tab});
    press(Qt::Key_Tab);
    EXPECT_FALSE(isListOpen());
    EXPECT_EQ(focused(), "Translate to");
    openList();
    press(Qt::Key_Backtab);
    EXPECT_FALSE(isListOpen());
    EXPECT_EQ(focused(), "Translate to");
    EXPECT_FALSE(settings.aiCleanupEnabled.get());
}

TEST_F(MenuPanelViews, whatIsOpen_closesBeforeThePanel) {
    open();
    show();
    QVariant closed;
    QMetaObject::invokeMethod(&*view, "closeWhatIsOpen", Q_RETURN_ARG(QVariant, closed));
    EXPECT_FALSE(closed.toBool());
    openList();
    QMetaObject::invokeMethod(&*view, "closeWhatIsOpen", Q_RETURN_ARG(QVariant, closed));
    EXPECT_TRUE(closed.toBool());
    EXPECT_FALSE(isListOpen());
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

TEST_F(MenuPanelViews, pageKeysInTheList_goFartherThanArrows) {
    languageModel.languages = {"es", "fr", "de", "it", "pt", "nl", "ja", "ko", "vi", "pl", "da"};
    open();
    show();
    auto& rows = rowsOf(openList());
    const auto current = [&] { return rows.property("currentIndex").toInt(); };
    press(Qt::Key_End);
    EXPECT_EQ(current(), 17);
    press(Qt::Key_Home);
    EXPECT_EQ(current(), 0);
    press(Qt::Key_PageDown);
    EXPECT_GT(current(), 1);
    press(Qt::Key_PageUp);
    EXPECT_EQ(current(), 0);
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

TEST_F(MenuPanelViews, languageListOnASmallScreen_staysWithinIt) {
    microphone.current = AuthorizationStatus::Denied;
    access.trusted = false;
    const SpokenLanguage german("de");
    open();
    view->setHeight(472); // 600 pixels at 125 %
    auto& rows = rowsOf(openList());
    EXPECT_GE(rows.height(), rows.parentItem()->parentItem()->property("rowHeight").toDouble());
    const auto bottom = rows.mapToItem(&*view, QPointF(0, rows.height())).y();
    EXPECT_LE(bottom, 472);
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
