// SPDX-License-Identifier: MIT
#include "Wizard.h"

#include "X11Windows.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QJsonDocument>

#include <stdexcept>

namespace talvera::test {

namespace {

constexpr QSize leastWizard{700, 500}; ///< larger than the panel and the HUD

QByteArray contentsOf(const QString& path) {
    QFile file(path);
    if (!file.open(QFile::ReadOnly))
        throw std::runtime_error(path.toStdString() + " can't be read");
    return file.readAll();
}

/// Where the program finds the model, whose digest is that of what is served.
QJsonObject offerOf(const FileServer& server, const QString& path) {
    const auto model = contentsOf(TALVERA_MICRO_MODEL);
    const auto digest = QCryptographicHash::hash(model, QCryptographicHash::Sha256).toHex();
    return {{"url", server.url(path).toString()},
            {"sha256", QString::fromLatin1(digest)},
            {"size", model.size()},
            {"trusted", server.authority()}};
}

} // namespace

WizardTest::WizardTest()
    : server({{"model", TALVERA_MICRO_MODEL}}) {
    offer("model");
    home.set("XDG_DATA_HOME", data.filePath("data"));
    home.setPreferences({{"hasOnboarded", false}});
}

void WizardTest::offer(const QString& path) {
    QFile file(data.filePath("offer.json"));
    if (!file.open(QFile::WriteOnly) || file.write(QJsonDocument(offerOf(server, path)).toJson()) < 0)
        throw std::runtime_error("the offer can't be written");
    home.set("TALVERA_TEST_MODEL", file.fileName());
}

void WizardTest::startWizard() {
    agent.emplace(home);
    if (!wizardComes())
        throw std::runtime_error("the wizard doesn't come");
}

void WizardTest::endAgent() {
    EXPECT_EQ(agent->end(), 0);
}

std::optional<QRect> WizardTest::wizard() {
    return X11Windows().viewable("talvera", leastWizard);
}

bool WizardTest::wizardComes() {
    return eventually([] {
        const auto frame = wizard();
        return frame && X11Windows().hasKeyboard(*frame);
    });
}

bool WizardTest::wizardGoes() {
    return eventually([] { return !wizard().has_value(); });
}

void WizardTest::closeWizard() {
    keys.press(Key::leftAlt);
    keys.tap(Key::onX(KEY_F4));
    keys.release(Key::leftAlt);
    if (!wizardGoes())
        throw std::runtime_error("the wizard doesn't go");
}

void WizardTest::awaitButton(const QString& name) const {
    const bool usable = eventually([&] {
        const auto button = ScreenReader::find(agent->pid(), "push button", name);
        return button && button->is("enabled");
    });
    if (!usable)
        throw std::runtime_error("the button " + name.toStdString() + " can't be used");
}

void WizardTest::clickButton(const QString& name) {
    awaitButton(name);
    clickOn("push button", name);
}

void WizardTest::goToStep(int last) {
    for (int step = 1; step <= last; ++step) {
        awaitButton(step == 1 ? "Get started" : "Continue");
        keys.tap(Key::enter);
        awaitStep(step);
    }
}

QStringList WizardTest::filesIn(const char* directory) const {
    return QDir(data.filePath("data/Talvera/") + directory)
        .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}

void WizardTest::dictateIntoAnEditor() {
    const QString sentence = "Please send the report tomorrow.";
    Receiver editor(Receiver::Kind::Gtk);
    holdAndSay(spoken(sentence));
    EXPECT_TRUE(editor.waitForText(sentence)) << editor.text().toStdString();
    agent->await("menu idle");
}

} // namespace talvera::test
