// SPDX-License-Identifier: MIT
// Trays that come late, go, and come back: the item follows them.
#include "PanelTest.h"
#include "Tray.h"

using namespace talvera::test;

namespace {

class TrayLife : public PanelTest, public testing::WithParamInterface<Tray::Kind> {
protected:
    void expectItemOpensThePanel() {
        ASSERT_TRUE(tray->waitForIcon());
        click(tray->icon());
        ASSERT_TRUE(panelComes());
        closePanel();
    }

    std::optional<Tray> tray;
};

} // namespace

TEST_P(TrayLife, trayThatComesLateAndAgain_hasTheItem) {
    startAgent();
    tray.emplace(GetParam());
    expectItemOpensThePanel();

    tray.reset();
    openPanel(); // without a tray, by a second start
    closePanel();

    tray.emplace(GetParam());
    expectItemOpensThePanel();
}

TEST_P(TrayLife, trayThatDies_isFollowedToTheNextOne) {
    tray.emplace(GetParam());
    startAgent();
    expectItemOpensThePanel();
    tray->kill();
    tray.reset();
    tray.emplace(GetParam() == Tray::Kind::X11 ? Tray::Kind::DBus : Tray::Kind::X11);
    expectItemOpensThePanel();
}

INSTANTIATE_TEST_SUITE_P(Trays, TrayLife, testing::Values(Tray::Kind::X11, Tray::Kind::DBus),
                         [](const auto& tray) { return tray.param == Tray::Kind::X11 ? "X11" : "DBus"; });
