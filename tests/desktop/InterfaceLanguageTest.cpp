// SPDX-License-Identifier: MIT
// The program in another language than English, as it is read from the screen.
#include "SettingsOnScreen.h"
#include "ShippedCatalogs.h"
#include "Wizard.h"

#include <QFile>

#include <stdexcept>

using namespace talvera;
using namespace talvera::test;

namespace {

/// What the German catalog says for this key.
QString german(const char* key) {
    static const auto texts = shippedTexts("de");
    const auto text = texts.value(key);
    if (text.isEmpty())
        throw std::runtime_error(std::string("there is no German for ") + key);
    return text;
}

class WizardInGerman : public WizardTest {
protected:
    void clickOnButton(const char* key) { clickButton(german(key)); }
};

/// With the model in its place, so that no wizard lies over the panel.
class InterfaceInGerman : public SettingsOnScreen {
protected:
    void awaitHUD(const char* key) {
        EXPECT_TRUE(eventually([&] {
            return ScreenReader::find(agent->pid(), "alert", german(key)).has_value();
        })) << key;
    }
};

/// A computer whose one font has no Japanese letters.
class InterfaceInJapanese : public WizardTest {
protected:
    InterfaceInJapanese() {
        QFile file(data.filePath("fonts.conf"));
        const QByteArray settings = R"(<?xml version="1.0"?>
<!DOCTYPE fontconfig SYSTEM "fonts.dtd">
<fontconfig><dir>/usr/share/fonts/opentype/inter</dir><cachedir>)" +
                                    data.filePath("fonts").toUtf8() + "</cachedir></fontconfig>";
        if (!file.open(QFile::WriteOnly) || file.write(settings) < 0)
            throw std::runtime_error("the fonts can't be hidden");
        home.set("FONTCONFIG_FILE", file.fileName());
    }
};

} // namespace

TEST_F(WizardInGerman, ofAGermanSession_isGermanAtEachStep) {
    home.set("LANGUAGE", "de_AT:en");
    home.set("LC_ALL", "de_AT.UTF-8");
    startWizard();
    clickOnButton("onboarding.nav.getStarted");
    for (int step = 1; step <= 5; ++step) {
        awaitStep(step);
        shown("push button", german("onboarding.nav.back"));
        if (step < 5)
            clickOnButton("onboarding.nav.continue");
    }
    shown("push button", german("onboarding.nav.finish"));
}

TEST_F(InterfaceInGerman, dictationAndPanel_areGermanByChoice) {
    startAgent({{"appLanguage", "de"}});
    keys.press(hotkey);
    agent->await("hud listening");
    awaitHUD("hud.release");
    keys.release(hotkey);
    agent->await("menu idle");
    openPanel();
    shown(anyRole, german("menu.translateTo"));
    shown("check box", german("menu.aiCleanup.title"));
    shown(anyRole, german("menu.quit"));
    closePanel();
}

TEST_F(InterfaceInGerman, freshStart_inAGermanSession_listensInEveryLanguage) {
    home.set("LANGUAGE", "de_AT:en");
    home.set("LC_ALL", "de_AT.UTF-8");
    startAgent();
    openSettings("language");
    EXPECT_EQ(shown("combo box", german("settings.language.sourceLanguage.title")).description,
              german("language.auto"));
    EXPECT_TRUE(stored("sourceLanguageCode").isUndefined());
    closeSettings();
}

TEST_F(InterfaceInJapanese, withoutAFont_isEnglishAndNamesThePackage) {
    home.setPreferences({{"hasOnboarded", false}, {"appLanguage", "ja"}});
    startWizard();
    shown("push button", "Get started");
    EXPECT_TRUE(eventually([this] {
        return ScreenReader::find(agent->pid(), "alert", "Your language needs the package fonts-noto-cjk")
            .has_value();
    }));
}
