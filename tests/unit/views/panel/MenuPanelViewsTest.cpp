// SPDX-License-Identifier: MIT
// What the panel's views make of the state, without a screen.
#include "GermanTexts.h"
#include "PanelFixture.h"
#include "itemsBelow.h"
#include "platform/desktop/DesktopAppearance.h"
#include "shell/panel/MenuPanelModel.h"
#include "views/ViewEngine.h"

#include <QQuickWindow>

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
        model.emplace(MenuPanelModel::Parts{menuBar, settings, stats, readiness, languageModel, layout});
        view = views.create("panel/MenuPanelView", {{"panel", QVariant::fromValue<QObject*>(&*model)}});
        view->setParentItem(window.contentItem());
        view->setWidth(300);
        layOut(*view);
        view->setHeight(view->property("fittingHeight").toInt());
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
    QQuickItem& ofType(const QString& type) {
        const auto found = itemsBelow(*view, [&](QQuickItem& item) {
            return QString::fromLatin1(item.metaObject()->className()).startsWith(type + "_QML");
        });
        return *found.at(0);
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

TEST_F(MenuPanelViews, everyStateInGerman_isShownWhole) {
    const GermanTexts german;
    for (const auto state : {State::Idle, State::Recording, State::Transcribing, State::Error}) {
        for (const bool tap : {false, true}) {
            menuBar.state.set(state);
            settings.hotkeyTapToToggle.set(tap);
            open();
            expectWholeTexts();
        }
    }
}

TEST_F(MenuPanelViews, bannerInGerman_isShownWhole) {
    const GermanTexts german;
    microphone.current = AuthorizationStatus::Denied;
    access.trusted = false;
    open();
    EXPECT_TRUE(shownText(model->bannerTitle()));
    expectWholeTexts();
}

TEST_F(MenuPanelViews, missingLanguageModelInGerman_isToldWhole) {
    const GermanTexts german;
    languageModel.reason = LanguageModel::UnavailableReason::DeviceNotEligible;
    open();
    expectWholeTexts();
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

} // namespace
