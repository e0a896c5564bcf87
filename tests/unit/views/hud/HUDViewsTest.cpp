// SPDX-License-Identifier: MIT
// What the HUD's views make of its states, without a screen.
#include "InMemoryPreferenceStore.h"
#include "ShippedCatalogs.h"
#include "itemsBelow.h"
#include "persistence/AppSettings.h"
#include "platform/desktop/DesktopAppearance.h"
#include "shell/hud/FocusNoticeText.h"
#include "shell/hud/HUDModel.h"
#include "shell/texts/languageName.h"
#include "views/ViewEngine.h"
#include "views/hud/WaveformCanvas.h"

#include <QAccessible>
#include <QImage>
#include <QPainter>
#include <QQmlContext>
#include <QQmlExpression>
#include <QQuickItem>

#include <gtest/gtest.h>

using namespace talvera;
using namespace talvera::test;
using State = DictationHUDState;

namespace {

QRectF outlineOf(const QQuickItem& root) {
    return root.property("outline").toRectF();
}

class HUDViews : public testing::Test {
protected:
    /// The only texts that are shown or on their way to be.
    std::vector<QQuickItem*> texts() {
        return itemsBelow(*root, [](QQuickItem& item) {
            if (!item.inherits("QQuickText") || item.property("text").toString().isEmpty())
                return false;
            for (auto* ancestor = &item; ancestor; ancestor = ancestor->parentItem()) {
                if (const auto shown = ancestor->property("shown"); shown.isValid())
                    return shown.toBool();
            }
            return true;
        });
    }
    bool reads(const QString& text) {
        const auto all = texts();
        return std::any_of(all.begin(), all.end(),
                           [&](QQuickItem* item) { return item->property("text") == text; });
    }

    InMemoryPreferenceStore store;
    AppSettings settings{store};
    StateHolder holder;
    HUDModel model{holder, settings};
    DesktopAppearance appearance;
    ViewEngine views{appearance};
    std::unique_ptr<QQuickItem> root =
        views.create("hud/HUDRoot", {{"model", QVariant::fromValue(&model)}, {"translucent", false}});
};

TEST_F(HUDViews, root_hasThePanelsSize) {
    EXPECT_EQ(root->size(), QSizeF(560, 72));
}

/// The calendar jumps by a year, and the time goes on by its second.
TEST_F(HUDViews, clockThatIsSetDuringARecording_leavesTheTimeAsItWas) {
    const auto timers =
        itemsBelow(*root, [](QQuickItem& item) { return item.property("setForward").isValid(); });
    ASSERT_EQ(timers.size(), 1U);
    auto& timer = *timers.front();
    timer.setProperty("running", true);
    const auto setClock = [&timer](const char* offset) {
        QQmlExpression(qmlContext(&timer), &timer, QStringLiteral("now = () => Date.now() %1").arg(offset))
            .evaluate();
    };
    for (const auto* year : {"+ 3.2e10", "- 3.2e10"}) {
        setClock("");
        holder.state.set(State::Listening{std::chrono::system_clock::now()});
        ASSERT_EQ(timer.property("time").toString().toStdString(), "00:00");
        setClock(year);
        while (timer.property("time").toString() == "00:00")
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        EXPECT_EQ(timer.property("time").toString().toStdString(), "00:01") << year;
    }
}

TEST_F(HUDViews, eachState_showsItsWordsWithinThePanel) {
    settings.targetLanguageCode.set("pt-BR");
    const std::vector<std::pair<State, QString>> states{
        {State::Listening{}, "Release to insert"},
        {State::Transcribing{}, "Transcribing…"},
        {State::Translating{"cleanup"}, "Translating to cleanup…"},
        {State::Notice{"Nothing recognized", State::NoticeTone::Warn}, "Nothing recognized"},
        {State::PermissionRequired{State::PermissionKind::Microphone}, "Microphone access needed"},
        {State::PermissionRequired{State::PermissionKind::Accessibility}, "Accessibility access needed"}};
    for (const auto& [state, words] : states) {
        holder.state.set(state);
        EXPECT_TRUE(reads(words)) << qPrintable(words);
        const auto outline = outlineOf(*root);
        EXPECT_TRUE(QRectF(0, 0, 560, 72).contains(outline)) << qPrintable(words);
        for (auto* text : texts()) {
            const auto area = text->mapRectToItem(root.get(), QRectF(QPointF(), text->size()));
            EXPECT_TRUE(outline.contains(area)) << qPrintable(text->property("text").toString());
        }
    }
}

TEST_F(HUDViews, hint_followsTheUseOfTheKey) {
    holder.state.set(State::Listening{});
    settings.hotkeyTapToToggle.set(true);
    EXPECT_TRUE(reads("Tap again to insert"));
    settings.hotkeyTapToToggle.set(false);
    EXPECT_TRUE(reads("Release to insert"));
}

TEST_F(HUDViews, card_fillsThePanel) {
    holder.state.set(State::PermissionRequired{State::PermissionKind::Microphone});
    EXPECT_EQ(outlineOf(*root), QRectF(0, 0, 560, 72));
}

/// As many characters as a notice shows of a name.
QString longName() {
    return QStringLiteral("Elektrizitätenhauptbetriebswerkbauamtsap");
}

TEST_F(HUDViews, noticeOfThreeLines_isShownWholeInTheUsualSize) {
    holder.state.set(State::Notice{QString("Donaudampfschifffahrt ").repeated(5), State::NoticeTone::Warn});
    const auto all = texts();
    ASSERT_EQ(all.size(), 1U);
    EXPECT_LE(all.front()->width(), 380);
    EXPECT_EQ(all.front()->property("lineCount"), 3);
    EXPECT_FALSE(all.front()->property("truncated").toBool());
    EXPECT_EQ(all.front()->property("font").value<QFont>().pixelSize(),
              views.theme().property("sizeGlance").toInt());
}

TEST_F(HUDViews, longestNotice_fillsFourSmallerLinesWithinThePanel) {
    holder.state.set(
        State::Notice{QString("Donaudampfschifffahrtsgesellschaft ").repeated(20), State::NoticeTone::Warn});
    const auto all = texts();
    ASSERT_EQ(all.size(), 1U);
    EXPECT_LE(all.front()->width(), 380);
    EXPECT_EQ(all.front()->property("lineCount"), 4);
    EXPECT_LE(all.front()->height(), 72);
    EXPECT_LE(outlineOf(*root).height(), 72);
}

TEST_F(HUDViews, shortNoticeAfterALongOne_hasTheUsualSizeAgain) {
    holder.state.set(State::Notice{QString("Donaudampfschifffahrtsgesellschaft ").repeated(20), {}});
    holder.state.set(State::Notice{"Nothing recognized", State::NoticeTone::Warn});
    EXPECT_EQ(texts().front()->property("font").value<QFont>().pixelSize(),
              views.theme().property("sizeGlance").toInt());
}

class TranslatedHUD : public HUDViews, public testing::WithParamInterface<std::string> {
protected:
    SpokenLanguage language{QString::fromStdString(GetParam())};

    void expectWholeNotice(const FocusNoticeText& notice) {
        holder.state.set(State::Notice{notice.text, notice.tone});
        ASSERT_EQ(texts().size(), 1U);
        EXPECT_FALSE(texts().front()->property("truncated").toBool()) << qPrintable(notice.text);
    }
};

TEST_P(TranslatedHUD, noticesWithALongName_sayToTheEndWhatIsToBeDone) {
    for (const auto kind : {FocusNotice::Kind::PastedIn, FocusNotice::Kind::ClipboardOriginalGone,
                            FocusNotice::Kind::ClipboardReactivateFailed})
        expectWholeNotice(focusNoticeText({kind, longName()}));
}

TEST_P(TranslatedHUD, otherNotices_areWhole) {
    using Kind = FocusNotice::Kind;
    for (const auto kind :
         {Kind::ClipboardByUserPreference, Kind::ClipboardNoTextField, Kind::ClipboardFocusLost,
          Kind::ClipboardNotPossible, Kind::ClipboardNotTaken, Kind::Undelivered})
        expectWholeNotice(focusNoticeText({kind, {}}));
}

TEST_P(TranslatedHUD, work_isToldWholeWithinThePanel) {
    settings.targetLanguageCode.set("pt-BR");
    const auto longest = languageName("pt-BR", {});
    for (const State& state :
         {State(State::Listening{}), State(State::Transcribing{}), State(State::Translating{longest})}) {
        for (const bool tap : {false, true}) {
            settings.hotkeyTapToToggle.set(tap);
            holder.state.set(state);
            const auto outline = outlineOf(*root);
            EXPECT_TRUE(QRectF(0, 0, 560, 72).contains(outline));
            for (auto* text : texts()) {
                const auto area = text->mapRectToItem(root.get(), QRectF(QPointF(), text->size()));
                EXPECT_TRUE(outline.contains(area)) << qPrintable(text->property("text").toString());
                EXPECT_FALSE(text->property("truncated").toBool())
                    << qPrintable(text->property("text").toString());
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Each, TranslatedHUD, testing::ValuesIn(shippedTranslations()), languageOfTest);

TEST_P(TranslatedHUD, card_showsItsTitlesWhole) {
    for (const auto kind : {State::PermissionKind::Microphone, State::PermissionKind::Accessibility}) {
        holder.state.set(State::PermissionRequired{kind});
        EXPECT_TRUE(reads(model.cardTitle()));
        for (auto* text : texts()) {
            EXPECT_FALSE(text->property("truncated").toBool())
                << qPrintable(text->property("text").toString());
        }
    }
}

TEST_F(HUDViews, cardWithLongWords_showsAllOfThemWithAir) {
    TextCatalog words({{"hud.permission.ax.title", "Berechtigung für Bedienungshilfen erforderlich"},
                       {"hud.permission.subtitle",
                        "Klicken, um die Systemeinstellungen zu öffnen und die Berechtigung zu erteilen"},
                       {"hud.permission.cta", "Einstellungen öffnen"}},
                      QStringLiteral("de"));
    QCoreApplication::installTranslator(&words);
    holder.state.set(State::PermissionRequired{State::PermissionKind::Accessibility});
    QCoreApplication::removeTranslator(&words);
    EXPECT_EQ(texts().size(), 3U);
    for (auto* text : texts()) {
        EXPECT_FALSE(text->property("truncated").toBool()) << qPrintable(text->property("text").toString());
        const auto place = text->mapRectToItem(root.get(), QRectF(QPointF(), text->size()));
        EXPECT_GE(place.top(), 4);
        EXPECT_LE(place.bottom(), 72 - 4);
    }
}

TEST_F(HUDViews, markUpInANotice_isShownAsItStands) {
    holder.state.set(State::Notice{"Pasted in <b>x</b>", State::NoticeTone::Info});
    EXPECT_TRUE(reads("Pasted in <b>x</b>"));
    EXPECT_EQ(texts().front()->property("textFormat").toInt(), int(Qt::PlainText));
}

TEST_F(HUDViews, translationOff_showsNoIndicator) {
    settings.targetLanguageCode.set("off");
    holder.state.set(State::Listening{});
    const auto all = texts();
    EXPECT_TRUE(std::none_of(all.begin(), all.end(), [](QQuickItem* item) {
        return item->property("text").toString().contains("→");
    }));
}

TEST_F(HUDViews, offScreen_nothingMoves) {
    for (const State& state :
         std::vector<State>{State::Listening{}, State::Transcribing{},
                            State::PermissionRequired{State::PermissionKind::Microphone}}) {
        holder.state.set(state);
        for (auto* item : itemsBelow(*root, [](QQuickItem&) { return true; })) {
            for (const char* motion : {"running", "animating"}) {
                EXPECT_FALSE(item->property(motion).toBool()) << item->metaObject()->className();
            }
        }
    }
}

TEST_F(HUDViews, onScreen_onlyTheStatesOwnPartsMove) {
    root->setProperty("isShown", true);
    const auto moving = [&] {
        return itemsBelow(*root, [](QQuickItem& item) { return item.property("running").toBool(); }).size();
    };
    holder.state.set(State::Listening{});
    EXPECT_EQ(moving(), 2U); // the orb and the time
    holder.state.set(State::Transcribing{});
    EXPECT_EQ(moving(), 1U);
    holder.state.set(State::Notice{"n", State::NoticeTone::Info});
    EXPECT_EQ(moving(), 0U);
    holder.state.set(State::PermissionRequired{State::PermissionKind::Microphone});
    EXPECT_EQ(moving(), 1U);
    holder.state.set(State::Hidden{});
    EXPECT_EQ(moving(), 0U);
}

TEST_F(HUDViews, root_tellsScreenReadersWhatItShows) {
    holder.state.set(State::Translating{"German"});
    auto* const accessible = QAccessible::queryAccessibleInterface(root.get());
    ASSERT_TRUE(accessible);
    EXPECT_EQ(accessible->role(), QAccessible::AlertMessage);
    EXPECT_EQ(accessible->text(QAccessible::Name), "Translating to German…");
}

TEST_F(HUDViews, card_hasTwoButtonsForScreenReaders) {
    std::string done;
    holder.permissionDismiss = [&] { done += "dismissed "; };
    holder.permissionOpenSettings = [&] { done += "opened "; };
    holder.state.set(State::PermissionRequired{State::PermissionKind::Microphone});
    std::map<QString, QAccessibleInterface*> buttons;
    for (auto* item : itemsBelow(*root, [](QQuickItem&) { return true; })) {
        auto* const accessible = QAccessible::queryAccessibleInterface(item);
        if (accessible && accessible->role() == QAccessible::Button)
            buttons[accessible->text(QAccessible::Name)] = accessible;
    }
    ASSERT_EQ(buttons.size(), 2U);
    for (const char* name : {"Dismiss", "Microphone access needed"}) {
        ASSERT_TRUE(buttons.count(name)) << name;
        buttons[name]->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    }
    EXPECT_EQ(done, "dismissed opened ");
}

/// The heights of the bars in a picture of them, from the left.
std::vector<int> barHeights(WaveformCanvas& canvas) {
    QImage image(int(canvas.width()), int(canvas.height()), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    canvas.paint(&painter);
    painter.end();
    std::vector<int> heights;
    for (int bar = 0; bar < 28; ++bar) {
        int height = 0;
        for (int y = 0; y < image.height(); ++y)
            height += image.pixelColor(bar * 5 + 1, y).alpha() > 60 ? 1 : 0;
        heights.push_back(height);
    }
    return heights;
}

class Bars : public HUDViews {
protected:
    Bars() {
        canvas.setSize({140, 22});
        canvas.setBarCount(28);
        canvas.setColor(Qt::red);
        canvas.setAnimating(true);
    }
    WaveformCanvas canvas;
};

TEST_F(Bars, atRest_areAllFourTall) {
    canvas.setAnimating(false);
    for (const int height : barHeights(canvas))
        EXPECT_NEAR(height, 4, 1);
}

TEST_F(Bars, voice_makesThemSwellWithinTheEase) {
    canvas.advance(1e12);
    const auto silent = barHeights(canvas);
    canvas.setLevel(1);
    canvas.advance(1e12 + 80);
    const auto loud = barHeights(canvas);
    EXPECT_LE(*std::max_element(silent.begin(), silent.end()), 3);
    EXPECT_GE(*std::max_element(loud.begin(), loud.end()), 10);
}

} // namespace
