// SPDX-License-Identifier: MIT
#pragma once

#include "itemsBelow.h"

#include <QRectF>
#include <QString>

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace talvera::test {

/// Finds what a view shows, for a fixture that says where the view begins.
class ShownItems {
protected:
    ShownItems() = default;
    ~ShownItems() = default;
    ShownItems(const ShownItems&) = delete;
    ShownItems& operator=(const ShownItems&) = delete;

    /// Below which everything is looked for, and from which places are counted.
    virtual QQuickItem& root() const = 0;

    /// Does at once what the next frame would do with `item` and all that is below it.
    static void layOut(QQuickItem& item) {
        for (auto* child : item.childItems())
            layOut(*child);
        item.ensurePolished();
    }

    template <typename Matches>
    std::vector<QQuickItem*> shownItems(const Matches& matches) const {
        layOut(root());
        return itemsBelow(root(), [&](QQuickItem& item) { return item.isVisible() && matches(item); });
    }
    std::vector<QQuickItem*> shownTexts() const {
        return shownItems([](QQuickItem& item) {
            return item.inherits("QQuickText") && !item.property("text").toString().isEmpty();
        });
    }
    /// The first text with these words; nothing if there is none.
    QQuickItem* shownText(const QString& words) const {
        for (auto* text : shownTexts()) {
            if (text->property("text").toString() == words)
                return text;
        }
        return nullptr;
    }
    bool isShown(const QString& words) const { return shownText(words) != nullptr; }

    /// The views of the type of this name, those that aren't shown too.
    std::vector<QQuickItem*> allOfType(const QString& type) const {
        return itemsBelow(root(), [&](QQuickItem& item) { return isOfType(item, type); });
    }
    std::vector<QQuickItem*> shownOfType(const QString& type) const {
        return shownItems([&](QQuickItem& item) { return isOfType(item, type); });
    }
    QQuickItem& ofType(const QString& type) const { return *allOfType(type).at(0); }

    QRectF placeOf(const QQuickItem& item) const {
        return item.mapRectToItem(&root(), QRectF(QPointF(), item.size()));
    }

    /// Nothing of the text is left out, and nothing stands out at the sides: of its own box, of whatever cuts
    /// off what stands out of it, and of the whole.
    void expectWholeAcross(const QQuickItem& text, const QString& state) const {
        const auto where = (state + ": " + text.property("text").toString()).toStdString();
        EXPECT_FALSE(text.property("truncated").toBool()) << where;
        EXPECT_LE(text.property("contentWidth").toDouble(), std::ceil(text.width())) << where;
        const auto place = placeOf(text);
        for (const auto* around = &text; around; around = around->parentItem()) {
            if (!around->clip() && around != &root())
                continue;
            EXPECT_GE(place.left(), placeOf(*around).left()) << where;
            EXPECT_LE(place.right(), placeOf(*around).right()) << where;
            if (around == &root())
                break;
        }
    }
    /// The same, above and below too.
    void expectWhole(const QQuickItem& text, const QString& state) const {
        expectWholeAcross(text, state);
        EXPECT_TRUE(QRectF(QPointF(), root().size()).contains(placeOf(text)))
            << (state + ": " + text.property("text").toString()).toStdString();
    }

private:
    static bool isOfType(const QQuickItem& item, const QString& type) {
        return QString::fromLatin1(item.metaObject()->className()).startsWith(type + QStringLiteral("_QML"));
    }
};

} // namespace talvera::test
