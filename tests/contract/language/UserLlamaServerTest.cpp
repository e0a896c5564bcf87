// SPDX-License-Identifier: MIT
// A real llama-server that the user runs, with our micro language model.
#include "PrintQt.h"
#include "Told.h"
#include "UserServerHome.h"

#include <QProcess>

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <optional>

using namespace talvera;
using namespace talvera::test;
using Case = AIFailure::Case;
using Reason = LanguageModel::UnavailableReason;

namespace {

/// The server as its user starts it.
class LlamaServerOfTheUser {
public:
    explicit LlamaServerOfTheUser(quint16 port) {
        m_process.setProcessChannelMode(QProcess::MergedChannels);
        m_process.start(TALVERA_LLAMA_SERVER,
                        {"-m", TALVERA_MICRO_LANGUAGE_MODEL, "--alias", "micro", "--host", "127.0.0.1",
                         "--port", QString::number(port), "-c", "2048", "-np", "1", "--no-ui"});
    }
    ~LlamaServerOfTheUser() {
        m_process.kill();
        m_process.waitForFinished();
    }

    /// Once it listens; 0 when it doesn't.
    quint16 port() {
        const QByteArray word = "listening on http://127.0.0.1:";
        EXPECT_TRUE(eventually([&] {
            m_said += m_process.readAll();
            const auto at = m_said.indexOf(word);
            return at >= 0 && m_said.indexOf('\n', at) > 0;
        })) << m_said.toStdString();
        quint16 port = 0;
        for (auto at = m_said.indexOf(word) + word.size();
             at < m_said.size() && std::isdigit(m_said[at]) != 0; ++at)
            port = static_cast<quint16>(10 * port + (m_said[at] - '0'));
        return port;
    }

private:
    QProcess m_process;
    QByteArray m_said;
};

class UserLlamaServerTest : public testing::Test {
protected:
    UserLlamaServerTest() {
        home.ports.llama = server->port();
        home.start();
        home.model->look();
        EXPECT_TRUE(eventually([this] { return offersIt(); }));
        home.model->choose("llama-server/micro");
    }

    bool offersIt() const {
        const auto offers = home.model->offers();
        return std::find(offers.begin(), offers.end(),
                         LanguageModelChoice::Offer{"llama-server/micro", "micro (llama-server)"}) !=
               offers.end();
    }
    bool becomes(std::optional<Reason> reason) const {
        return eventually([&] { return home.model->unavailableReason() == reason; });
    }
    Told ask(const QString& instructions, const QString& text) {
        Told told;
        const auto session = home.model->makeSession(instructions, LanguageModel::Guardrails::Default);
        session->streamResponse("<raw>" + text + "</raw>", told.listener());
        const auto hasEnded = [&told] { return told.ends > 0; };
        // A model that computes takes its time on a busy machine.
        EXPECT_TRUE(eventually(hasEnded) || eventually(hasEnded) || eventually(hasEnded));
        return told;
    }
    Told cleanUp() {
        return ask(AICleanup::cleanupInstructions(CleanupTone::Conversational),
                   "Write a important letter to Anna.");
    }

    std::optional<LlamaServerOfTheUser> server{std::in_place, quint16{0}};
    UserServerHome home;
};

TEST_F(UserLlamaServerTest, chosenOne_cleansUpAndTranslates) {
    EXPECT_TRUE(becomes(std::nullopt));
    const auto cleaned = cleanUp();
    EXPECT_FALSE(cleaned.failure);
    EXPECT_EQ(cleaned.text(), "Write an important letter to Anna.");
    EXPECT_EQ(cleanUp().text(), cleaned.text());
    qsizetype snapshots = 0; // who is held up on a busy machine hears all of so short an answer at once
    for (int i = 0; i < 20 && snapshots < 2; ++i)
        snapshots = cleanUp().snapshots.size();
    EXPECT_GT(snapshots, 1) << "as it is written";
    EXPECT_EQ(ask(AICleanup::translationInstructions("German"), "We need butter and paper.").text(),
              "Wir brauchen Butter und Papier.");
}

TEST_F(UserLlamaServerTest, textThatIsLongerThanTheContext_isTooLong) {
    const auto told = ask("Reply.", QString(20000, 'a'));
    ASSERT_TRUE(told.failure);
    EXPECT_EQ(told.failure->kind, Case::TooLong);
    EXPECT_TRUE(told.snapshots.isEmpty());
}

TEST_F(UserLlamaServerTest, serverThatIsEndedAndStartedAgain_isGoneMeanwhile) {
    EXPECT_TRUE(becomes(std::nullopt));
    server.reset();
    home.model->prepare();
    EXPECT_TRUE(becomes(Reason::IntelligenceOff));
    server.emplace(home.ports.llama);
    EXPECT_EQ(server->port(), home.ports.llama);
    home.model->prepare();
    EXPECT_TRUE(becomes(std::nullopt));
    EXPECT_EQ(cleanUp().text(), "Write an important letter to Anna.");
}

} // namespace
