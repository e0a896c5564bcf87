// SPDX-License-Identifier: MIT
#include "FakeLanguageModel.h"
#include "PrintQt.h"
#include "ServedModel.h"
#include "SimulatedMainActor.h"
#include "Told.h"
#include "UserServerHome.h"
#include "language/AICleanup.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <memory>
#include <utility>

using namespace talvera;
using namespace talvera::test;

namespace {

/// What a subject's model does with the next request.
struct Doing {
    QStringList pieces;               ///< what it writes, one after another
    std::optional<AIFailure> failure; ///< how it ends then; nothing for a good end
};

/// The model of the fakes, on the virtual clock.
class ScriptedSubject {
public:
    LanguageModel& model() { return m_model; }
    MainActor& actor() { return m_actor; }

    void next(std::vector<Doing> doings) {
        std::vector<ModelAnswer> answers;
        for (const auto& doing : doings) {
            auto& answer = answers.emplace_back();
            QString content;
            for (const auto& piece : doing.pieces)
                answer.snapshots.push_back({seconds(0.1), content += piece});
            if (doing.failure)
                answer.failure.emplace(word(doing.failure->kind));
        }
        m_model.setAnswers(std::move(answers));
    }
    void setAvailable(bool available) {
        m_model.reason =
            available ? std::nullopt : std::optional(LanguageModel::UnavailableReason::IntelligenceOff);
        m_model.languages = available ? QSet<QString>{"en", "de"} : QSet<QString>{};
        m_model.tellChange();
    }
    /// What the model has been told by the last request.
    QString lastInstructions() const { return m_model.requests.back().instructions; }
    QString lastPrompt() const { return m_model.requests.back().prompt; }

    /// Lets happen what is under way.
    void settle() { EXPECT_TRUE(m_actor.runToRest(seconds(60))); }

private:
    static QString word(AIFailure::Case kind) {
        switch (kind) {
        case AIFailure::Case::TooLong:
            return "exceededContextWindowSize";
        case AIFailure::Case::RateLimited:
            return "rateLimited";
        case AIFailure::Case::Blocked:
            return "guardrailViolation";
        default:
            return "assetsUnavailable";
        }
    }

    SimulatedMainActor m_actor;
    FakeLanguageModel m_model{m_actor};
};

/// The model behind a server that answers as the test says, in real time.
class ServedSubject {
public:
    LanguageModel& model() { return *m_home.model; }

    void next(const std::vector<Doing>& doings) {
        QFile script(m_home.at(QStringLiteral("m.gguf.script")));
        ASSERT_TRUE(script.open(QIODevice::Append));
        for (const auto& doing : doings) {
            const auto failure = doing.failure ? QJsonValue(rawValue(doing.failure->kind)) : QJsonValue();
            script.write(QJsonDocument(QJsonObject{{"pieces", QJsonArray::fromStringList(doing.pieces)},
                                                   {"failure", failure}})
                             .toJson(QJsonDocument::Compact) +
                         '\n');
        }
    }
    void setAvailable(bool available) {
        if (available)
            m_home.put();
        else
            m_home.takeAway();
    }
    QString lastInstructions() const { return lastMessage(0); }
    QString lastPrompt() const { return lastMessage(1); }
    void settle() { m_home.settle(); }

private:
    QString lastMessage(int index) const {
        QFile file(m_home.directories.temporary + "/requests.jsonl");
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        const auto last = file.readAll().trimmed().split('\n').constLast();
        return QJsonDocument::fromJson(last)
            .object()["messages"]
            .toArray()[index]
            .toObject()["content"]
            .toString();
    }

    ServedModel m_home{QStringLiteral(TALVERA_SCRIPTED_LLAMA_SERVER)};
};

/// A model of a server that the user runs, once it has been chosen.
template <ScriptedUserServer::Kind kind>
class UserServerSubject {
public:
    UserServerSubject() {
        m_home.start();
        m_home.model->choose(isOllama ? QStringLiteral("ollama/m") : QStringLiteral("llama-server/m"));
    }

    LanguageModel& model() { return *m_home.model; }

    void next(const std::vector<Doing>& doings) {
        for (const auto& doing : doings)
            server().answers.push_back(answerFor(doing));
    }
    void setAvailable(bool available) {
        if (available)
            server().listen();
        else
            server().stop();
        m_home.look();
        EXPECT_TRUE(eventually([&] { return m_home.model->unavailableReason().has_value() != available; }));
    }
    QString lastInstructions() { return lastMessage(0); }
    QString lastPrompt() { return lastMessage(1); }
    void settle() { m_home.settle(); }

private:
    static constexpr bool isOllama = kind == ScriptedUserServer::Kind::Ollama;

    static ScriptedUserServer::Answer answerFor(const Doing& doing) {
        if (!doing.failure)
            return {doing.pieces};
        if (!doing.pieces.isEmpty())
            return {.pieces = doing.pieces, .reason = QStringLiteral("length")};
        switch (doing.failure->kind) {
        case AIFailure::Case::TooLong:
            return {.status = 400,
                    .error = isOllama ? R"({"error":"input exceeds the context length"})"
                                      : R"({"error":{"type":"exceed_context_size_error","code":400}})"};
        case AIFailure::Case::RateLimited:
            return {.status = 429, .error = "{}"};
        case AIFailure::Case::Blocked:
            return {.status = 400, .error = R"({"error":{"type":"content_filter","code":400}})"};
        default:
            return {.status = 503, .error = "{}"};
        }
    }
    ScriptedUserServer& server() { return isOllama ? m_home.ollama : m_home.llama; }
    QString lastMessage(int index) {
        return server().chats.last()["messages"].toArray()[index].toObject()["content"].toString();
    }

    UserServerHome m_home;
};

template <typename Subject>
class LanguageModelContract : public testing::Test {
protected:
    LanguageModelContract() { subject.setAvailable(true); }

    std::unique_ptr<LanguageModelSession> session() {
        return subject.model().makeSession("Reply with the same words.", LanguageModel::Guardrails::Default);
    }
    /// A request to its end.
    Told ask(const QString& prompt = "so um we meet") {
        Told told;
        const auto asked = session();
        asked->streamResponse(prompt, told.listener());
        EXPECT_EQ(told.snapshots.size() + told.ends, 0) << "told from within the request";
        subject.settle();
        EXPECT_EQ(told.ends, 1);
        EXPECT_EQ(told.callsAfterTheEnd, 0);
        return told;
    }

    Subject subject;
};

using Subjects =
    testing::Types<ScriptedSubject, ServedSubject, UserServerSubject<ScriptedUserServer::Kind::Ollama>,
                   UserServerSubject<ScriptedUserServer::Kind::Llama>>;
TYPED_TEST_SUITE(LanguageModelContract, Subjects);

TYPED_TEST(LanguageModelContract, answer_growsToItsEnd) {
    this->subject.next({{{"So ", "we ", "meet."}, {}}});
    const auto told = this->ask();
    ASSERT_FALSE(told.snapshots.isEmpty());
    EXPECT_EQ(told.snapshots.constLast(), "So we meet.");
    for (qsizetype i = 1; i < told.snapshots.size(); ++i)
        EXPECT_TRUE(told.snapshots[i].startsWith(told.snapshots[i - 1]));
    EXPECT_FALSE(told.failure);
}

TYPED_TEST(LanguageModelContract, answerInOtherScripts_arrivesAsItIs) {
    const auto text = QString::fromUtf8(
        "Встречаемся в пять. 五時に会いましょう 👩‍👩‍👧 „so“\n\n- x");
    this->subject.next({{{text.left(9), text.mid(9)}, {}}});
    EXPECT_EQ(this->ask().snapshots.constLast(), text);
}

TYPED_TEST(LanguageModelContract, request_reachesTheModelAsItIs) {
    this->subject.next({{{"ok"}, {}}});
    const auto prompt =
        QString::fromUtf8("<raw>so \"um\" \\ we\n— встречаемся\t👩‍👩‍👧</raw>");
    this->ask(prompt);
    EXPECT_EQ(this->subject.lastInstructions(), "Reply with the same words.");
    EXPECT_EQ(this->subject.lastPrompt(), prompt);
}

TYPED_TEST(LanguageModelContract, emptyAnswer_endsWell) {
    this->subject.next({{{}, {}}});
    const auto told = this->ask();
    EXPECT_FALSE(told.failure);
    EXPECT_EQ(told.snapshots.join(QString()), "");
}

TYPED_TEST(LanguageModelContract, failureAtOnce_isTheOnlyThingTold) {
    for (const auto kind : {AIFailure::Case::TooLong, AIFailure::Case::RateLimited,
                            AIFailure::Case::ModelLoading, AIFailure::Case::Blocked}) {
        this->subject.next({{{}, AIFailure{kind, {}}}});
        const auto told = this->ask();
        EXPECT_EQ(told.snapshots, QStringList());
        ASSERT_TRUE(told.failure);
        EXPECT_EQ(rawValue(told.failure->kind), rawValue(kind));
    }
}

TYPED_TEST(LanguageModelContract, failureInMidAnswer_comesBehindWhatWasWritten) {
    this->subject.next({{{"So ", "we "}, AIFailure{AIFailure::Case::TooLong, {}}}});
    const auto told = this->ask();
    EXPECT_EQ(told.snapshots.constLast(), "So we ");
    ASSERT_TRUE(told.failure);
    EXPECT_EQ(told.failure->kind, AIFailure::Case::TooLong);
}

TYPED_TEST(LanguageModelContract, sessionDestroyedAtOnce_tellsNothing) {
    this->subject.next({{{"So ", "we ", "meet."}, {}}});
    Told told;
    {
        const auto session = this->session();
        session->streamResponse("so um we meet", told.listener());
    }
    this->subject.settle();
    EXPECT_EQ(told.snapshots.size() + told.ends, 0);
}

TYPED_TEST(LanguageModelContract, sessionDestroyedByItsFirstSnapshot_tellsNothingMore) {
    this->subject.next({{{"So ", "we ", "meet."}, {}}});
    Told told;
    auto session = this->session();
    auto listener = told.listener();
    listener.onSnapshot = [&told, &session](const QString& content) {
        told.snapshots << content;
        session.reset();
    };
    session->streamResponse("so um we meet", std::move(listener));
    this->subject.settle();
    EXPECT_EQ(told.snapshots.size(), 1);
    EXPECT_EQ(told.ends, 0);
}

TYPED_TEST(LanguageModelContract, sessionDestroyedByItsEnd_isFine) {
    for (const bool fails : {false, true}) {
        this->subject.next(
            {{{"So"}, fails ? std::optional(AIFailure{AIFailure::Case::TooLong, {}}) : std::nullopt}});
        int ends = 0;
        auto session = this->session();
        const auto end = [&session, &ends] {
            ++ends;
            session.reset();
        };
        session->streamResponse("so um we meet", {.onSnapshot = [](const QString&) {},
                                                  .onFinished = end,
                                                  .onFailed = [end](const LanguageModelError&) { end(); }});
        this->subject.settle();
        EXPECT_EQ(ends, 1);
    }
}

TYPED_TEST(LanguageModelContract, requestAfterACancelledOne_isAnswered) {
    // The one that is dropped at once may not reach the model.
    this->subject.next({{{"And ", "we talk."}, {}}, {{"And ", "we talk."}, {}}});
    {
        Told dropped;
        const auto session = this->session();
        session->streamResponse("so um we meet", dropped.listener());
    }
    EXPECT_EQ(this->ask().snapshots.constLast(), "And we talk.");
}

TYPED_TEST(LanguageModelContract, twoRequestsAtOnce_getTheirOwnAnswers) {
    this->subject.next({{{"So ", "we ", "meet."}, {}}, {{"And ", "we talk."}, {}}});
    Told first;
    Told second;
    const auto one = this->session();
    const auto two = this->session();
    one->streamResponse("so um we meet", first.listener());
    two->streamResponse("and um we talk", second.listener());
    this->subject.settle();
    ASSERT_EQ(first.ends + second.ends, 2);
    EXPECT_EQ(first.snapshots.constLast(), "So we meet.");
    EXPECT_EQ(second.snapshots.constLast(), "And we talk.");
}

TYPED_TEST(LanguageModelContract, modelThatGoesAndComes_isToldAndAnswersAtOnce) {
    int changes = 0;
    const auto subscription = this->subject.model().observe([&changes] { ++changes; });
    EXPECT_FALSE(this->subject.model().unavailableReason());
    EXPECT_FALSE(this->subject.model().supportedLanguages().isEmpty());
    this->subject.setAvailable(false);
    this->subject.settle();
    EXPECT_GE(changes, 1);
    EXPECT_TRUE(this->subject.model().unavailableReason());
    changes = 0;
    this->subject.setAvailable(true);
    this->subject.settle();
    EXPECT_GE(changes, 1);
    EXPECT_FALSE(this->subject.model().unavailableReason());
}

TYPED_TEST(LanguageModelContract, changesAfterTheSubscription_areNotTold) {
    int changes = 0;
    {
        const auto subscription = this->subject.model().observe([&changes] { ++changes; });
    }
    this->subject.setAvailable(false);
    this->subject.settle();
    EXPECT_EQ(changes, 0);
}

TYPED_TEST(LanguageModelContract, preparation_changesNothingOfTheAnswer) {
    this->subject.next({{{"So we meet."}, {}}});
    this->subject.model().prepare();
    this->subject.model().prepare();
    EXPECT_EQ(this->ask().snapshots.constLast(), "So we meet.");
}

} // namespace
