// SPDX-License-Identifier: MIT
#include "windows/WizardVisit.h"

#include "keys.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include <chrono>
#include <functional>
#include <stdexcept>
#include <string>
#include <thread>

namespace talvera::bench {

using namespace std::chrono_literals;
using Clock = PaintWitness::Clock;

namespace {

using test::Key::onX;

constexpr QSize leastWizard{700, 500};
constexpr auto patience = 60s;

void await(const char* what, const std::function<bool()>& condition) {
    const auto deadline = Clock::now() + patience;
    while (!condition()) {
        if (Clock::now() > deadline)
            throw std::runtime_error(std::string("waited in vain: ") + what);
        std::this_thread::sleep_for(20ms);
    }
}

} // namespace

ModelHome::ModelHome() {
    QDir().mkpath(QFileInfo(m_model).path());
    QFile::copy(TALVERA_MICRO_MODEL, m_model);
    QFile model(m_model);
    QFile offer(m_data.filePath("offer.json"));
    if (!model.open(QFile::ReadOnly) || !offer.open(QFile::WriteOnly))
        throw std::runtime_error("no home for the agent");
    const auto digest = QCryptographicHash::hash(model.readAll(), QCryptographicHash::Sha256).toHex();
    offer.write(QJsonDocument(QJsonObject{{"url", m_server.url("model").toString()},
                                          {"sha256", QString::fromLatin1(digest)},
                                          {"size", model.size()},
                                          {"trusted", m_server.authority()}})
                    .toJson());
    home.set("TALVERA_TEST_MODEL", offer.fileName());
    home.set("XDG_DATA_HOME", m_data.filePath("data"));
}

void ModelHome::removeModel() const {
    QFile::remove(m_model);
}

void ModelHome::awaitModel() const {
    await("the model comes", [this] { return QFile::exists(m_model); });
}

Clock::duration WizardVisit::open() {
    m_paint.forget();
    const auto told = Clock::now();
    if (!m_second.tellHolder({}))
        throw std::runtime_error("the agent doesn't listen");
    return m_paint.awaitOf(m_agent) - told;
}

void WizardVisit::close() {
    await("the wizard has the keyboard", [this] {
        const auto frame = m_windows.viewable("talvera", leastWizard);
        return frame && m_windows.hasKeyboard(*frame);
    });
    m_keys.press(test::Key::leftAlt);
    m_keys.tap(onX(KEY_F4));
    m_keys.release(test::Key::leftAlt);
    await("the wizard goes", [this] { return !m_windows.viewable("talvera", leastWizard); });
}

} // namespace talvera::bench
