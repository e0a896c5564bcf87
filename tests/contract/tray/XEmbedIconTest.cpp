// SPDX-License-Identifier: MIT
// The icon in a real tray that takes windows into itself.
#include "linux/x11/windows/XEmbedIcon.h"
#include "OtherWindow.h"
#include "linux/x11/server/X11Server.h"
#include "square.h"

#include <QProcess>

#include <gtest/gtest.h>

using namespace talvera;
using namespace talvera::test;

namespace {

class XEmbedIconInTray : public testing::TestWithParam<const char*> {
protected:
    void SetUp() override {
        tray.start("trayer",
                   {"--edge", "top", "--align", "left", "--widthtype", "pixel", "--width", "200", "--height",
                    "28", "--transparent", "true", "--alpha", "0", "--tint", GetParam()});
        ASSERT_TRUE(tray.waitForStarted());
    }
    void TearDown() override {
        tray.terminate();
        if (!tray.waitForFinished(5000))
            tray.kill();
        tray.waitForFinished();
    }

    /// The colour of the screen at the icon's middle.
    QColor seen() {
        const auto place = icon.frame().value_or(QRect()).center();
        const auto answer = screen->reply<xcb_get_image_reply_t>(
            xcb_get_image(screen->get(), XCB_IMAGE_FORMAT_Z_PIXMAP, screen->root(), std::int16_t(place.x()),
                          std::int16_t(place.y()), 1, 1, ~0U));
        const auto* pixel = answer ? xcb_get_image_data(answer.get()) : nullptr;
        return pixel ? QColor(pixel[2], pixel[1], pixel[0]) : QColor();
    }

    std::unique_ptr<X11Connection> screen = X11Server().connect();
    QProcess tray;
    XEmbedIcon icon{X11Server(), square};
};

TEST_P(XEmbedIconInTray, symbol_standsOutFromTheTraysColour) {
    const bool dark = QByteArray(GetParam()) == "0x000000";
    icon.setSymbol("mic.fill");
    icon.setShown(true);
    ASSERT_TRUE(eventually([this] { return icon.frame().has_value(); }));
    EXPECT_TRUE(eventually([&] { return seen() == (dark ? TrayColors::onDark : TrayColors::onLight); }))
        << qPrintable(seen().name());
}

INSTANTIATE_TEST_SUITE_P(DarkAndLight, XEmbedIconInTray, testing::Values("0x000000", "0xffffff"));

} // namespace
