// SPDX-License-Identifier: MIT
// The panel's row for the target language, and the list that it opens.
#include "MenuPanelViews.h"
#include "ShippedCatalogs.h"

#include <cmath>

using namespace talvera;
using namespace talvera::test;

namespace {

class LanguageListView : public MenuPanelViews {};

TEST_F(LanguageListView, languageList_showsWholeRowsAndTheChosenOne) {
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

TEST_F(LanguageListView, searchWithoutMatch_saysSoWithinTheList) {
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

TEST_F(LanguageListView, languageRow_opensByReturnSpaceAndAltDown) {
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

TEST_F(LanguageListView, clickBesideTheOpenList_closesItAndDoesNothingElse) {
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

TEST_F(LanguageListView, keysInTheOpenList_stayInItUntilItCloses) {
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

TEST_F(LanguageListView, whatIsOpen_closesBeforeThePanel) {
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

TEST_F(LanguageListView, pageKeysInTheList_goFartherThanArrows) {
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

TEST_F(LanguageListView, languageListOnASmallScreen_staysWithinIt) {
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

} // namespace
