// SPDX-License-Identifier: MIT
#include "platform/desktop/DesktopAppearance.h"
#include "views/ViewEngine.h"

#include <QColor>
#include <QCoreApplication>
#include <QQmlComponent>
#include <QQuickItem>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>

using namespace talvera;

namespace {

double luminance(const QColor& color) {
    const auto linear = [](double channel) {
        return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

/// As the web's accessibility guidelines count it, from 1 to 21.
double contrast(const QColor& a, const QColor& b) {
    const auto [dark, light] = std::minmax({luminance(a), luminance(b)});
    return (light + 0.05) / (dark + 0.05);
}

/// What a translucent colour looks like over another.
QColor over(const QColor& above, const QColor& below) {
    const auto mixed = [alpha = above.alphaF()](float a, float b) { return a * alpha + b * (1 - alpha); };
    return QColor::fromRgbF(mixed(above.redF(), below.redF()), mixed(above.greenF(), below.greenF()),
                            mixed(above.blueF(), below.blueF()));
}

class Theme : public testing::TestWithParam<bool> {
protected:
    Theme() { appearance.isDark.set(GetParam()); }

    QColor color(const char* name) { return engine.theme().property(name).value<QColor>(); }

    DesktopAppearance appearance;
    ViewEngine engine{appearance};
};

TEST_P(Theme, textOnEveryPlane_isReadable) {
    for (const char* plane : {"window", "surface", "overlayOpaque", "fill", "fillHovered", "fillPressed"}) {
        for (const char* text : {"text", "textSecondary"})
            EXPECT_GE(contrast(color(text), color(plane)), 4.5) << text << " on " << plane;
    }
    for (const char* plane : {"window", "surface", "overlayOpaque"}) {
        for (const char* text : {"accent", "info", "good", "warn", "bad"})
            EXPECT_GE(contrast(color(text), color(plane)), 4.5) << text << " on " << plane;
    }
    for (const char* plane : {"accent", "accentHovered", "accentPressed"})
        EXPECT_GE(contrast(color("textOnAccent"), color(plane)), 4.5) << plane;
    for (const char* plane : {"fill", "fillHovered", "fillPressed"}) // as on a button that says what is wrong
        EXPECT_GE(contrast(color("warn"), color(plane)), 4.5) << plane;
    for (const char* text : {"text", "textSecondary", "accent"})
        EXPECT_GE(contrast(color(text), color("accentFill")), 4.5) << text;
    for (const char* text : {"text", "warn"})
        EXPECT_GE(contrast(color(text), color("warnFill")), 4.5) << text;
    EXPECT_GE(contrast(color("overlayOpaque"), color("warn")), 4.5) << "the symbol on a badge";
}

TEST_P(Theme, whatTellsWithoutWords_standsOut) {
    for (const char* plane : {"window", "surface", "overlayOpaque", "fill"}) {
        for (const char* sign : {"focusRing", "mark", "good", "warn", "bad", "accent"})
            EXPECT_GE(contrast(color(sign), color(plane)), 3) << sign << " on " << plane;
    }
}

TEST_P(Theme, overlay_isReadableWhateverLiesBelow) {
    for (const QColor below : {QColor(Qt::black), QColor(Qt::white)}) {
        for (const char* text : {"text", "textSecondary", "accent", "warn"})
            EXPECT_GE(contrast(color(text), over(color("overlay"), below)), 4.5) << text;
    }
}

TEST_P(Theme, overlay_letsNextToNothingThroughAndHasAnEdge) {
    EXPECT_GE(color("overlay").alphaF(), 0.98);
    // A light overlay on a white page, a dark one on a black one.
    const QColor page = GetParam() ? Qt::black : Qt::white;
    const auto edge = over(color("overlayOutline"), over(color("overlay"), page));
    EXPECT_GE(contrast(edge, page), 1.8);
}

TEST_P(Theme, planesWithinAPlane_turnTheirCornersAboutOnePoint) {
    const auto length = [this](const char* name) { return engine.theme().property(name).toInt(); };
    EXPECT_EQ(length("radius") - length("spacingSmall"), length("radiusSmall"));
}

INSTANTIATE_TEST_SUITE_P(LightAndDark, Theme, testing::Bool());

TEST(ViewEngine, desktopTurnsDark_themeFollowsAtOnce) {
    DesktopAppearance appearance;
    ViewEngine engine(appearance);
    const auto light = engine.theme().property("window").value<QColor>();
    appearance.isDark.set(true);
    EXPECT_LT(luminance(engine.theme().property("window").value<QColor>()), luminance(light));
}

TEST(Cycle, calendarThatIsSetBack_doesNotHoldItUp) {
    DesktopAppearance appearance;
    ViewEngine engine(appearance);
    QQmlComponent component(&engine.engine());
    component.setData("import Talvera\nCycle { running: true }", {});
    const std::unique_ptr<QObject> cycle(component.create());
    ASSERT_TRUE(cycle) << qPrintable(component.errorString());
    cycle->setProperty("startedAt", 1e15); // in another age
    while (!(cycle->property("value").toDouble() > 0))
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    EXPECT_LT(cycle->property("value").toDouble(), 1);
}

TEST(Frames, theyAre30ASecondAtMost) {
    DesktopAppearance appearance;
    ViewEngine engine(appearance);
    QQmlComponent component(&engine.engine());
    component.setData("import Talvera\nFrames {}", {});
    const std::unique_ptr<QObject> frames(component.create());
    ASSERT_TRUE(frames) << qPrintable(component.errorString());
    EXPECT_GE(frames->property("length").toDouble(), 1000.0 / 30);
}

TEST(ViewEngine, create_makesTheViewWithItsProperties) {
    DesktopAppearance appearance;
    ViewEngine engine(appearance);
    const auto label = engine.create("controls/Label", {{"text", "Hello"}});
    EXPECT_EQ(label->property("text"), "Hello");
    EXPECT_EQ(label->property("color").value<QColor>(), engine.theme().property("text").value<QColor>());
    EXPECT_GT(label->implicitWidth(), 10);
}

} // namespace
