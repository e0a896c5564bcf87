// SPDX-License-Identifier: MIT
#pragma once

#include "ScriptedUserServer.h"
#include "ServedModel.h"
#include "linux/language/ChosenLanguageModel.h"

#include <QTcpSocket>

#include <memory>

namespace talvera::test {

/// A computer on which the user runs servers of language models, by default none of them, and on which no
/// server of ours is.
struct UserServerHome {
    /// Makes the model anew, as the next start of the agent does.
    void start() {
        model.reset();
        model = std::make_unique<ChosenLanguageModel>(
            ChosenLanguageModel::Parts{files.actor, files.preferences, *files.model},
            ChosenLanguageModel::Options{.request = limits, .ports = ports});
    }

    /// Looks which models there are, and waits for what the servers say.
    void look() {
        model->look();
        settle();
    }
    /// Waits until nothing is under way to a server, or from one, and for what is posted then.
    void settle() {
        constexpr int questions = 4; // one of which may lead to the next
        for (int question = 0; question < questions; ++question) {
            files.turn();
            files.turn();
            for (auto* server : {&ollama, &llama})
                settle(*server);
        }
        files.turn();
    }

    ServedModel files{QString()};
    ScriptedUserServer ollama{ScriptedUserServer::Kind::Ollama};
    ScriptedUserServer llama{ScriptedUserServer::Kind::Llama};
    UserServers::Ports ports{ollama.port(), llama.port()};
    ServerRequest::Limits limits;
    std::unique_ptr<ChosenLanguageModel> model;

private:
    /// A connection behind all that are being made: once it has been taken, and all of them are closed, all
    /// has been said.
    static void settle(ScriptedUserServer& server) {
        QTcpSocket last;
        last.connectToHost(QHostAddress(QHostAddress::LocalHost), server.port());
        if (!last.waitForConnected())
            return; // nobody listens
        EXPECT_TRUE(eventually([&] { return server.lastPeer == last.localPort(); }));
        last.abort();
        EXPECT_TRUE(eventually([&] { return server.isIdle(); }));
    }
};

} // namespace talvera::test
