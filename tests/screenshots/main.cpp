// SPDX-License-Identifier: MIT
// talvera-screenshots DIRECTORY LABEL light|dark [TEXTS…]: takes pictures of all our windows on the desktop
// that it runs on, in the words of the catalogs TEXTS; of one kind alone if SCENES is "wizard" or "settings",
// and of each kind one if it is "front-page". talvera-screenshots --icons FILE draws the tray's symbols.
#include "HUDScenes.h"
#include "IconSheet.h"
#include "PanelScenes.h"
#include "RecorderScenes.h"
#include "SettingsScenes.h"
#include "Stage.h"
#include "TrayScenes.h"
#include "WizardScenes.h"
#include "linux/x11/windows/prepareToolkitForX11.h"
#include "shell/texts/TextCatalog.h"

#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <vector>

using namespace talvera;

namespace {

/// The texts of the program's languages, one above the other.
class Words {
public:
    bool load(const QString& path) {
        QFile file(path);
        const auto texts = file.open(QIODevice::ReadOnly) ? TextCatalog::parse(file.readAll()) : std::nullopt;
        if (!texts) {
            std::cerr << qPrintable(path) << " is no catalog of texts\n";
            return false;
        }
        m_catalogs.push_back(std::make_unique<TextCatalog>(*texts, QFileInfo(path).baseName()));
        return QGuiApplication::installTranslator(m_catalogs.back().get());
    }

private:
    std::vector<std::unique_ptr<TextCatalog>> m_catalogs;
};

} // namespace

int main(int argc, char** argv) {
    ViewEngine::prepareProcess();
    prepareToolkitForX11();
    const QGuiApplication application(argc, argv);
    QGuiApplication::setQuitOnLastWindowClosed(false);
    const auto arguments = QGuiApplication::arguments();
    if (arguments.size() == 3 && arguments[1] == "--icons") {
        test::drawIconSheet(arguments[2]);
        return EXIT_SUCCESS;
    }
    if (arguments.size() < 4) {
        std::cerr << "usage: talvera-screenshots DIRECTORY LABEL light|dark [TEXTS]\n";
        return EXIT_FAILURE;
    }
    Words words;
    auto catalogs = arguments.mid(4);
    catalogs.prepend(QStringLiteral(TALVERA_TEXTS "/en.json"));
    if (!std::all_of(catalogs.begin(), catalogs.end(), [&](const auto& path) { return words.load(path); }))
        return EXIT_FAILURE;
    const auto only = qEnvironmentVariable("SCENES");
    const bool isForFrontPage = only == QStringLiteral("front-page");
    const auto language = QFileInfo(catalogs.last()).baseName();
    test::Stage stage(arguments[1], arguments[2], language, arguments[3] == "dark",
                      isForFrontPage ? test::Stage::Backdrop::Plain : test::Stage::Backdrop::Desk);
    stage.wait(seconds(0.5));
    const bool areAllWanted = only.isEmpty() || isForFrontPage;
    if (areAllWanted || only == QStringLiteral("wizard"))
        test::photographWizard(stage);
    if (areAllWanted || only == QStringLiteral("settings"))
        test::photographSettings(stage);
    if (!areAllWanted)
        return EXIT_SUCCESS;
    test::photographHUD(stage);
    test::photographPanel(stage);
    if (isForFrontPage)
        return EXIT_SUCCESS;
    test::photographRecorder(stage);
    if (application.devicePixelRatio() == 1 && arguments.size() == 4)
        test::photographTrays(stage);
    return EXIT_SUCCESS;
}
