// SPDX-License-Identifier: MIT
#include "TrayScenes.h"

#include "Stage.h"
#include "linux/tray/TrayStatusItem.h"
#include "linux/x11/windows/XEmbedIcon.h"
#include "views/controls/SymbolProvider.h"

#include <QProcess>

namespace talvera::test {

namespace {

constexpr QRect trayPlace(0, 0, 200, 40);
constexpr int mostWaits = 50;

} // namespace

void photographTrays(Stage& stage) {
    const std::pair<const char*, QStringList> colors[]{
        {"theme", {"--transparent", "false"}},
        {"black", {"--transparent", "true", "--alpha", "0", "--tint", "0x000000"}},
        {"white", {"--transparent", "true", "--alpha", "0", "--tint", "0xffffff"}},
    };
    for (const auto& [name, options] : colors) {
        QProcess tray;
        tray.start("trayer", QStringList{"--edge", "top", "--align", "left", "--margin", "0", "--widthtype",
                                         "pixel", "--width", "200", "--height", "32", "--expand", "false"} +
                                 options);
        if (!tray.waitForStarted())
            return;
        TrayStatusItem item(stage.actor, traySymbolImage, {},
                            std::make_unique<XEmbedIcon>(stage.server, traySymbolImage));
        item.setSymbol("waveform.badge.microphone");
        item.setVisible(true);
        for (int waits = 0; waits < mostWaits && !item.frame(); ++waits)
            stage.wait(seconds(0.1));
        stage.wait(seconds(0.5));
        stage.photograph(QStringLiteral("tray-") + name, trayPlace);
        tray.terminate();
        tray.waitForFinished();
    }
}

} // namespace talvera::test
