// SPDX-License-Identifier: MIT
#pragma once

#include "PanelFixture.h"
#include "ShownItems.h"
#include "platform/desktop/DesktopAppearance.h"
#include "shell/panel/MenuPanelModel.h"
#include "views/ViewEngine.h"

#include <QQuickWindow>
#include <QTest>

#include <memory>
#include <optional>
#include <vector>

namespace talvera::test {

/// The views of the panel over a machine of fakes, without a screen.
class MenuPanelViews : public PanelTest, protected ShownItems {
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

    QQuickItem& root() const override { return *view; }

    void expectWholeTexts() {
        for (const auto* text : shownTexts())
            expectWhole(*text, QStringLiteral("the panel"));
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

} // namespace talvera::test
