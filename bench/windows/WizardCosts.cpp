// SPDX-License-Identifier: MIT
// wizard_costs [TIMES]: how soon the wizard is painted, what the agent costs while it stands there, and how
// much of its memory is left when it has closed.
#include "FileServer.h"
#include "RigInput.h"
#include "X11Windows.h"
#include "keys.h"
#include "linux/x11/windows/X11DisplayClaim.h"
#include "support/Dictating.h"
#include "support/Figure.h"
#include "support/PaintWitness.h"
#include "support/ProcessTree.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <stdexcept>
#include <thread>

using namespace talvera;
using namespace talvera::bench;
using namespace std::chrono_literals;

namespace {

using test::Key::onX;

constexpr QSize leastWizard{700, 500};
constexpr auto patience = 60s;
constexpr auto watched = 4s;

void await(const char* what, const std::function<bool()>& condition) {
    const auto deadline = Clock::now() + patience;
    while (!condition()) {
        if (Clock::now() > deadline)
            throw std::runtime_error(std::string("waited in vain: ") + what);
        std::this_thread::sleep_for(20ms);
    }
}

/// A home with the model in it, and a server that has it when it is gone.
class Home {
public:
    Home() {
        QDir().mkpath(QFileInfo(m_model).path());
        putModel();
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

    void putModel() const { QFile::copy(TALVERA_MICRO_MODEL, m_model); }
    void removeModel() const { QFile::remove(m_model); }
    bool hasModel() const { return QFile::exists(m_model); }

    test::AgentHome home;

private:
    QTemporaryDir m_data;
    const QString m_model = m_data.filePath("data/Talvera/models/ggml-medium-q5_0.bin");
    test::FileServer m_server{{{"model", TALVERA_MICRO_MODEL}}};
};

/// The wizard is due, so that is what a second start brings.
class Wizard {
public:
    explicit Wizard(pid_t agent)
        : m_agent(agent) {}

    /// Answers how long it takes to its first paint.
    Clock::duration open() {
        m_paint.forget();
        const auto told = Clock::now();
        if (!m_second.tellHolder({}))
            throw std::runtime_error("the agent doesn't listen");
        return m_paint.awaitOf(m_agent) - told;
    }
    void close() {
        await("the wizard has the keyboard", [this] {
            const auto frame = m_windows.viewable("talvera", leastWizard);
            return frame && m_windows.hasKeyboard(*frame);
        });
        m_keys.press(test::Key::leftAlt);
        m_keys.tap(onX(KEY_F4));
        m_keys.release(test::Key::leftAlt);
        await("the wizard goes", [this] { return !m_windows.viewable("talvera", leastWizard); });
    }

private:
    const pid_t m_agent;
    X11DisplayClaim m_second{X11Server()};
    test::RigInput m_keys;
    test::X11Windows m_windows;
    PaintWitness m_paint;
};

/// What part of one processor the agent takes from now on.
double processorShare(const ProcessTree& tree) {
    const auto before = tree.used();
    const auto start = Clock::now();
    std::this_thread::sleep_for(watched);
    return 100 * (milliseconds(tree.used() - before) / milliseconds(Clock::now() - start));
}

/// From the start of a program that has never run to the first paint of its wizard.
double firstStart() {
    Home home;
    home.removeModel();
    home.home.setPreferences({{"hasOnboarded", false}});
    PaintWitness paint;
    const auto start = Clock::now();
    const test::AgentProcess agent(home.home);
    return milliseconds(paint.awaitOf(agent.pid()) - start);
}

void measure(int times) {
    Home home;
    home.home.setPreferences({});
    test::AgentProcess agent(home.home);
    agent.awaitRest();
    const ProcessTree tree(agent.pid());
    // Without the recogniser that stands ready now and then, which no window has to do with.
    const double before = tree.megabytesOfRoot();
    const double ownBefore = tree.ownMegabytesOfRoot();

    home.removeModel();
    Wizard wizard(agent.pid());
    Figure first("the wizard: told to open to the first paint, the first time");
    first.add(milliseconds(wizard.open()));
    first.print(Aim::below(200));
    await("the model comes", [&] { return home.hasModel(); });
    std::this_thread::sleep_for(2s); // the recogniser is warmed up
    printFigure("while the wizard welcomes the user: one core", processorShare(tree), "%");
    wizard.close();
    agent.awaitRest();
    printFigure("memory (PSS) after the wizard beyond that before", tree.megabytesOfRoot() - before, "MB",
                Aim::atMost(5));
    printFigure("  of it in no file", tree.ownMegabytesOfRoot() - ownBefore, "MB");

    Figure later("the wizard: told to open to the first paint");
    for (int time = 0; time < times; ++time) {
        home.removeModel();
        later.add(milliseconds(wizard.open()));
        await("the model comes", [&] { return home.hasModel(); });
        wizard.close();
    }
    later.print(Aim::below(200));
    agent.awaitRest();
    printFigure("memory (PSS) after " + std::to_string(times) + " more wizards beyond that before the first",
                tree.megabytesOfRoot() - before, "MB");
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const int times = argc > 1 ? std::max(std::atoi(argv[1]), 1) : 10;
    try {
        firstStart(); // from the disk
        Figure start("the first start of all: launch of the program to the wizard's first paint");
        for (int i = 0; i < times; ++i)
            start.add(firstStart());
        start.print();
        measure(times);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "wizard_costs: %s\n", error.what());
        return 1;
    }
    return 0;
}
