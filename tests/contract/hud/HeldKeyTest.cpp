// SPDX-License-Identifier: MIT
// What a window of ours is told of a key that is held.
#include "RigInput.h"
#include "eventually.h"
#include "keys.h"

#include <gtest/gtest.h>

#include <QKeyEvent>
#include <QRasterWindow>

using namespace talvera::test;

namespace {

class KeyWindow final : public QRasterWindow {
public:
    int presses = 0;
    int releases = 0; ///< also those that are marked as repeats

private:
    void keyPressEvent(QKeyEvent*) override { ++presses; }
    void keyReleaseEvent(QKeyEvent*) override { ++releases; }
};

} // namespace

TEST(HeldKey, isLetGoOnceAlthoughItRepeats) {
    KeyWindow window;
    window.resize(200, 100);
    window.show();
    ASSERT_TRUE(eventually([&window] { return window.isActive(); }));
    RigInput keys;
    keys.press(Key::space);
    EXPECT_TRUE(eventually([&window] { return window.presses > 20; }));
    EXPECT_EQ(window.releases, 0);
    keys.release(Key::space);
    EXPECT_TRUE(eventually([&window] { return window.releases > 0; }));
    EXPECT_EQ(window.releases, 1);
}
