// SPDX-License-Identifier: MIT
#pragma once

#include "OnboardingFixture.h"
#include "ShownItems.h"
#include "platform/desktop/DesktopAppearance.h"
#include "shell/onboarding/OnboardingModel.h"
#include "views/ViewEngine.h"

#include <QQuickItem>
#include <QQuickWindow>

#include <memory>
#include <optional>

namespace talvera::test {

/// The wizard's view, made as its window makes it, without a screen.
class OnboardingViewFixture : public OnboardingFixture, protected ShownItems {
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
    QQuickItem& root() const override { return *view; }

    DesktopAppearance appearance;
    ViewEngine views{appearance};
    QQuickWindow window;
    std::optional<OnboardingModel> model;
    std::unique_ptr<QQuickItem> view;
};

} // namespace talvera::test
