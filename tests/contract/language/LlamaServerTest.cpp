// SPDX-License-Identifier: MIT
#include "PrintQt.h"
#include "ServedModel.h"
#include "Told.h"

#include <gtest/gtest.h>

using namespace talvera;
using namespace talvera::test;

namespace {

/// The real server, with a model that says what is known beforehand: the last character of what it is told
/// decides, see make-model.
class LlamaServerTest : public testing::Test {
protected:
    LlamaServerTest() { home.put(); }

    Told ask(const QString& prompt, const QString& instructions = "Reply.") {
        Told told;
        const auto session = home.model->makeSession(instructions, LanguageModel::Guardrails::Default);
        session->streamResponse(prompt, told.listener());
        home.settle();
        EXPECT_EQ(told.ends, 1);
        EXPECT_EQ(told.callsAfterTheEnd, 0);
        return told;
    }

    /// In the place of the other one.
    void putModelWithContext(std::uint32_t tokens) {
        home.takeAway();
        QFile whole(TALVERA_TEST_LANGUAGE_MODEL);
        ASSERT_TRUE(whole.open(QIODevice::ReadOnly));
        auto bytes = whole.readAll();
        const QByteArray key = "llama.context_length";
        const auto value =
            bytes.indexOf(key) + key.size() + qsizetype{sizeof(std::uint32_t)}; // behind its kind
        bytes.replace(value, sizeof tokens,
                      QByteArray(reinterpret_cast<const char*>(&tokens), sizeof tokens));
        QFile file(home.at("short.gguf"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        file.close();
        ASSERT_TRUE(eventually([this] { return home.offers("short.gguf"); }));
    }

    ServedModel home{QStringLiteral(TALVERA_LLAMA_SERVER)};
};

TEST_F(LlamaServerTest, answer_growsToItsEndAndIsTheSameTwice) {
    const auto instructions = AICleanup::cleanupInstructions(CleanupTone::Professional);
    const auto first = ask("<raw>so um we meet at five</raw>", instructions);
    EXPECT_FALSE(first.failure);
    EXPECT_EQ(first.text(), "So we meet at five.");
    for (qsizetype i = 1; i < first.snapshots.size(); ++i)
        EXPECT_TRUE(first.snapshots[i].startsWith(first.snapshots[i - 1]));
    EXPECT_EQ(ask("<raw>so um we meet at five</raw>", instructions).text(), first.text());
}

TEST_F(LlamaServerTest, requestBeforeTheServerIsUp_isAnswered) {
    EXPECT_FALSE(home.model->isLoaded());
    EXPECT_EQ(ask("um").text(), "So we meet at five.");
    EXPECT_TRUE(home.model->isLoaded());
}

TEST_F(LlamaServerTest, emptyAnswer_endsWell) {
    const auto told = ask("so.");
    EXPECT_FALSE(told.failure);
    EXPECT_EQ(told.text(), "");
}

TEST_F(LlamaServerTest, thoughts_areNotTold) {
    const auto told = ask("so?");
    EXPECT_FALSE(told.failure);
    EXPECT_EQ(told.text(), "So we meet at five.");
    for (const auto& snapshot : told.snapshots)
        EXPECT_FALSE(snapshot.contains("hm"));
}

TEST_F(LlamaServerTest, textThatIsLongerThanTheContext_isTooLong) {
    const auto told = ask(QString(5000, 'a'));
    EXPECT_TRUE(told.snapshots.isEmpty());
    ASSERT_TRUE(told.failure);
    EXPECT_EQ(told.failure->kind, AIFailure::Case::TooLong);
}

TEST_F(LlamaServerTest, answerThatTheContextCuts_isTooLongBehindWhatWasWritten) {
    putModelWithContext(256); // tokens take their time on a busy machine
    const auto told = ask("and so onL");
    ASSERT_TRUE(told.failure);
    EXPECT_EQ(told.failure->kind, AIFailure::Case::TooLong);
    EXPECT_TRUE(told.text().startsWith("xxxxxxxx"));
}

TEST_F(LlamaServerTest, requestThatIsDropped_leavesTheServerToTheNext) {
    Told told;
    {
        const auto session = home.model->makeSession("Reply.", LanguageModel::Guardrails::Default);
        session->streamResponse("and so onL", told.listener());
        EXPECT_TRUE(eventually([&] { return !told.snapshots.isEmpty(); }));
    }
    EXPECT_EQ(ask("um").text(), "So we meet at five.");
    EXPECT_EQ(told.ends, 0);
}

TEST_F(LlamaServerTest, twoRequestsAtOnce_areBothAnswered) {
    Told first;
    Told second;
    const auto one = home.model->makeSession("Reply.", LanguageModel::Guardrails::Default);
    const auto two = home.model->makeSession("Reply.", LanguageModel::Guardrails::Default);
    one->streamResponse("um", first.listener());
    two->streamResponse("so?", second.listener());
    home.settle();
    EXPECT_EQ(first.text(), "So we meet at five.");
    EXPECT_EQ(second.text(), "So we meet at five.");
}

TEST_F(LlamaServerTest, serverThatIsKilledInMidAnswer_failsBehindWhatWasWritten) {
    Told told;
    const auto session = home.model->makeSession("Reply.", LanguageModel::Guardrails::Default);
    auto listener = told.listener();
    listener.onSnapshot = [&](const QString& content) {
        if (told.snapshots.isEmpty())
            home.killServer();
        told.snapshots << content;
    };
    session->streamResponse("and so onL", std::move(listener));
    home.settle();
    ASSERT_TRUE(told.failure);
    EXPECT_EQ(told.failure->kind, AIFailure::Case::Other);
    EXPECT_EQ(ask("um").text(), "So we meet at five.") << "and the next one is answered again";
}

TEST_F(LlamaServerTest, fileThatIsNoWholeModel_makesTheMachineNotEligible) {
    home.takeAway();
    QFile whole(TALVERA_TEST_LANGUAGE_MODEL);
    ASSERT_TRUE(whole.open(QIODevice::ReadOnly));
    QFile cut(home.at("cut.gguf"));
    ASSERT_TRUE(cut.open(QIODevice::WriteOnly));
    cut.write(whole.read(whole.size() / 2));
    cut.close();
    ASSERT_TRUE(eventually([&] { return home.offers("cut.gguf"); }));
    EXPECT_EQ(ask("um").failure->kind, AIFailure::Case::ModelLoading);
    EXPECT_EQ(home.model->unavailableReason(), LanguageModel::UnavailableReason::DeviceNotEligible);
}

TEST_F(LlamaServerTest, server_hasNoSocketButItsOwnAndNothingInItsEnvironment) {
    qputenv("LLAMA_ARG_CTX_SIZE", "16");
    qputenv("LLAMA_API_KEY", "secret");
    EXPECT_EQ(ask("um").text(), "So we meet at five.");
    qunsetenv("LLAMA_ARG_CTX_SIZE");
    qunsetenv("LLAMA_API_KEY");
    const auto server = QString::number(home.server());
    QFile environment("/proc/" + server + "/environ");
    ASSERT_TRUE(environment.open(QIODevice::ReadOnly));
    EXPECT_FALSE(environment.readAll().contains("LLAMA"));
    QFile status("/proc/" + server + "/status");
    ASSERT_TRUE(status.open(QIODevice::ReadOnly));
    const auto lines = status.readAll();
    EXPECT_TRUE(lines.contains("NoNewPrivs:\t1"));
    EXPECT_TRUE(lines.contains("Seccomp:\t2")) << "the kernel filters its calls";
}

} // namespace
