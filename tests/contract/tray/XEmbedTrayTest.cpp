// SPDX-License-Identifier: MIT
// The icon in a tray that does what a test wants to see: changes, goes, comes back.
#include "XEmbedTray.h"
#include "OtherWindow.h"
#include "PrintQt.h"
#include "RigInput.h"
#include "linux/x11/server/X11Server.h"
#include "linux/x11/windows/XEmbedIcon.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <tuple>

using namespace talvera;
using namespace talvera::test;

namespace {

/// A block in the middle that has half the edge of the whole.
QImage block(const QString&, const QColor& color, int pixels) {
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    for (int y = pixels / 4; y < pixels * 3 / 4; ++y) {
        for (int x = pixels / 4; x < pixels * 3 / 4; ++x)
            image.setPixelColor(x, y, color);
    }
    return image;
}

class XEmbed : public testing::Test {
protected:
    XEmbed() {
        icon.onClick = [this] { ++clicks; };
        icon.setSymbol("mic.fill");
        icon.setShown(true);
    }

    bool takesIn(XEmbedTray& tray) {
        return eventually([&] { return tray.hasIcon(); });
    }
    bool shows(XEmbedTray& tray, const QPoint& place, const QColor& color) {
        return eventually([&] { return tray.pixel(place) == color; });
    }

    XEmbedIcon icon{X11Server(), block};
    int clicks = 0;
};

TEST_F(XEmbed, trayThatComesLater_takesTheIconIn) {
    EXPECT_FALSE(icon.hasTray());
    EXPECT_EQ(icon.frame(), std::nullopt);
    XEmbedTray tray(Qt::black);
    EXPECT_TRUE(takesIn(tray));
    EXPECT_TRUE(eventually([&] { return icon.frame() == QRect(XEmbedTray::iconPlace, QSize(24, 24)); }));
}

TEST_F(XEmbed, symbol_standsOutAgainstTheTraysBackground) {
    const QColor dark("#202428");
    const QColor light("#f0ece8");
    for (const auto& [background, symbol] :
         {std::pair(dark, TrayColors::onDark), std::pair(light, TrayColors::onLight)}) {
        XEmbedTray tray(background);
        ASSERT_TRUE(takesIn(tray));
        EXPECT_TRUE(shows(tray, {12, 12}, symbol)) << background.name().toStdString();
        EXPECT_TRUE(shows(tray, {1, 1}, background)) << background.name().toStdString();
    }
}

TEST_F(XEmbed, otherSize_isFilledByTheSymbol) {
    XEmbedTray tray(Qt::black, {16, 16});
    ASSERT_TRUE(takesIn(tray));
    EXPECT_TRUE(shows(tray, {8, 8}, TrayColors::onDark));
    tray.setIconSize({64, 64});
    EXPECT_TRUE(shows(tray, {18, 18}, TrayColors::onDark));
    EXPECT_TRUE(shows(tray, {46, 46}, TrayColors::onDark));
    EXPECT_TRUE(shows(tray, {8, 8}, Qt::black));
    tray.setIconSize({48, 24}); // in the middle, and not distorted
    EXPECT_TRUE(shows(tray, {24, 12}, TrayColors::onDark));
    EXPECT_TRUE(shows(tray, {13, 12}, Qt::black));
}

/// Trays of absurd sizes, as broken or malicious ones give them.
class HugeXEmbed : public testing::TestWithParam<std::tuple<XEmbedTray::Icons, QSize>> {
protected:
    int largest = 0; ///< edge in pixels that a symbol was painted with
    XEmbedIcon icon{X11Server(), [this](const QString& name, const QColor& color, int pixels) {
                        largest = std::max(largest, pixels);
                        return pixels <= 1000 ? block(name, color, pixels) : QImage();
                    }};
};

TEST_P(HugeXEmbed, size_isDrawnInASmallPartAndTheIconLivesOn) {
    const auto [icons, size] = GetParam();
    int clicks = 0;
    icon.onClick = [&] { ++clicks; };
    icon.setSymbol("mic.fill");
    icon.setShown(true);
    XEmbedTray tray(Qt::black, {24, 24}, icons);
    ASSERT_TRUE(eventually([&] { return tray.hasIcon() && largest > 0; }));
    tray.setIconSize(size);
    ASSERT_TRUE(eventually([&, size = size] { return icon.frame() == QRect(XEmbedTray::iconPlace, size); }));
    icon.setSymbol("waveform");
    RigInput mouse;
    mouse.click(XEmbedTray::iconPlace.x() + 5, XEmbedTray::iconPlace.y() + 5, 1);
    EXPECT_TRUE(eventually([&] { return clicks == 1; }));
    tray.setIconSize({64, 64});
    EXPECT_TRUE(eventually([&] {
        return largest >= 32 && tray.pixel({32, 32}).value_or(Qt::black) != Qt::black;
    }));
    EXPECT_LE(largest, 256);
}

INSTANTIATE_TEST_SUITE_P(Trays, HugeXEmbed,
                         testing::Combine(testing::Values(XEmbedTray::Icons::Opaque,
                                                          XEmbedTray::Icons::Translucent),
                                          testing::Values(QSize(1000, 700), QSize(10000, 10000),
                                                          QSize(32767, 32767), QSize(32767, 24))));

TEST_F(XEmbed, eachButton_isAClickAndTheWheelIsNone) {
    XEmbedTray tray(Qt::black);
    ASSERT_TRUE(takesIn(tray));
    ASSERT_TRUE(shows(tray, {12, 12}, TrayColors::onDark));
    RigInput mouse;
    const auto place = XEmbedTray::iconPlace + QPoint(12, 12);
    for (const int button : {4, 5, 1, 2, 3})
        mouse.click(place.x(), place.y(), button);
    EXPECT_TRUE(eventually([this] { return clicks == 3; })) << clicks;
}

TEST_F(XEmbed, trayThatGoes_leavesNoWindowAndTheNextHasTheIcon) {
    for (int i = 0; i < 3; ++i) {
        XEmbedTray tray(Qt::black);
        ASSERT_TRUE(takesIn(tray));
        EXPECT_TRUE(shows(tray, {12, 12}, TrayColors::onDark));
    }
    EXPECT_TRUE(eventually([this] { return !icon.hasTray(); }));
    EXPECT_EQ(icon.frame(), std::nullopt);
}

TEST_F(XEmbed, hidden_leavesTheTrayAndComesBack) {
    XEmbedTray tray(Qt::black);
    ASSERT_TRUE(takesIn(tray));
    icon.setShown(false);
    EXPECT_TRUE(eventually([&] { return !tray.hasIcon(); }));
    icon.setShown(true);
    EXPECT_TRUE(takesIn(tray));
}

TEST(XEmbedWithoutServer, icon_isNowhere) {
    XEmbedIcon icon{X11Server(":4711"), block};
    icon.setSymbol("mic.fill");
    icon.setTitle("Talvera");
    icon.setShown(true);
    EXPECT_FALSE(icon.hasTray());
    EXPECT_EQ(icon.frame(), std::nullopt);
}

} // namespace
