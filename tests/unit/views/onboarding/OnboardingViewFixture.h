// SPDX-License-Identifier: MIT
#pragma once

#include "OnboardingFixture.h"
#include "itemsBelow.h"
#include "platform/desktop/DesktopAppearance.h"
#include "shell/onboarding/OnboardingModel.h"
#include "views/ViewEngine.h"

#include <QQuickItem>
#include <QQuickWindow>

#include <algorithm>
#include <memory>
#include <optional>
#include <vector>

namespace talvera::test {

/// The wizard's view, made as its window makes it, without a screen.
class OnboardingViewFixture : public OnboardingFixture {
protected:
    /// Makes the view as its window does.
    void make() {
        view.reset();
        model.emplace(OnboardingModel::Parts{controller, downloader, readiness, settings, layout, &recorder});
        view = views.create("onboarding/OnboardingView",
                            {{"wizard", QVariant::fromValue<QObject*>(&*model)}, {"moves", false}});
        view->setParentItem(window.contentItem());
        view->setSize(QSizeF(760, 580));
        layOut(*view);
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
    std::vector<QQuickItem*> shownOfType(const QString& type) {
        return itemsBelow(*view, [&](QQuickItem& item) {
            return item.isVisible() &&
                   QString::fromLatin1(item.metaObject()->className()).startsWith(type + "_QML");
        });
    }
    QRectF placeOf(const QQuickItem& item) const {
        return item.mapRectToItem(&*view, QRectF(QPointF(), item.size()));
    }
    bool isShown(const QString& words) {
        const auto texts = shownTexts();
        return std::any_of(texts.begin(), texts.end(),
                           [&](auto* text) { return text->property("text").toString() == words; });
    }

    DesktopAppearance appearance;
    ViewEngine views{appearance};
    QQuickWindow window;
    std::optional<OnboardingModel> model;
    std::unique_ptr<QQuickItem> view;
};

} // namespace talvera::test
