// SPDX-License-Identifier: MIT
// talvera-screenshots DIRECTORY LABEL light|dark [german]: takes pictures of all our windows on the desktop
// that it runs on.
#include "HUDScenes.h"
#include "Stage.h"
#include "shell/TextCatalog.h"

#include <QFile>
#include <QGuiApplication>
#include <QTranslator>

#include <cstdlib>
#include <iostream>
#include <map>

using namespace talvera;

namespace {

/// Longer words than English has, for the layouts.
class German final : public QTranslator {
public:
    bool isEmpty() const override { return false; }
    QString translate(const char*, const char* key, const char*, int) const override {
        static const std::map<std::string_view, QString> texts{
            {"hud.release", "Loslassen, um den Text einzufügen"},
            {"hud.transcribing", "Spracherkennung läuft …"},
            {"hud.translating", "Übersetzung: %@ …"},
            {"hud.permission.mic.title", "Mikrofonberechtigung erforderlich"},
            {"hud.permission.ax.title", "Berechtigung für Bedienungshilfen erforderlich"},
            {"hud.permission.subtitle",
             "Klicken, um die Systemeinstellungen zu öffnen und die Berechtigung zu erteilen"},
            {"hud.permission.cta", "Einstellungen öffnen"},
            {"hud.permission.dismiss", "Schließen"},
            {"hud.focus.reactivated", "In %@ eingefügt"},
            {"hud.focus.clipboard.reactivateFailed",
             "Zurückwechseln zu %@ fehlgeschlagen – Text in die Zwischenablage kopiert. Zum Einfügen "
             "Strg+V drücken."},
            {"screenshot.language", "Brasilianisches Portugiesisch"},
            {"screenshot.cleanup", "Textbereinigung"},
            {"screenshot.nothing", "Spracherkennung fehlgeschlagen"},
        };
        const auto found = texts.find(key);
        return found == texts.end() ? QString() : found->second;
    }
};

} // namespace

int main(int argc, char** argv) {
    if (argc < 4) {
        std::cerr << "usage: talvera-screenshots DIRECTORY LABEL light|dark [german]\n";
        return EXIT_FAILURE;
    }
    ViewEngine::prepareProcess();
    QGuiApplication application(argc, argv);
    QGuiApplication::setQuitOnLastWindowClosed(false);
    QFile texts(QStringLiteral(TALVERA_TEXTS "/en.json"));
    if (!texts.open(QIODevice::ReadOnly))
        return EXIT_FAILURE;
    TextCatalog english(TextCatalog::parse(texts.readAll()).value_or(TextCatalog::Texts()));
    QGuiApplication::installTranslator(&english);
    German german;
    if (argc > 4)
        QGuiApplication::installTranslator(&german);
    test::Stage stage(QString::fromLocal8Bit(argv[1]), QString::fromLocal8Bit(argv[2]),
                      QLatin1String(argv[3]) == QLatin1String("dark"));
    stage.wait(seconds(0.5));
    test::photographHUD(stage);
    return EXIT_SUCCESS;
}
