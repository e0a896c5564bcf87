// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Lifetime.h"
#include "concurrency/MainActor.h"
#include "linux/language/HttpResponseReader.h"
#include "linux/language/ServerConnection.h"

#include <QByteArray>

#include <functional>
#include <memory>
#include <optional>

namespace talvera {

/// One question to a server on this computer and its whole answer, which is small. Main thread only; it works
/// from the event loop. Destroying it takes the question back.
class ServerInquiry {
public:
    struct Answer {
        int status = 0; ///< of HTTP; 0 when there is no answer, not in time, or one that can't be read
        QByteArray body;
    };
    /// What is asked, of whom, and how long the answer may take.
    struct Question {
        ServerAddress address;
        QByteArray request;
        Duration patience;
    };

    /// Asks. `onAnswer` is called once, in a turn of its own, and may destroy this object.
    ServerInquiry(MainActor& actor, Question question, std::function<void(const Answer& answer)> onAnswer);
    ~ServerInquiry();
    ServerInquiry(const ServerInquiry&) = delete;
    ServerInquiry& operator=(const ServerInquiry&) = delete;

private:
    void begin();
    void send();
    void receive();
    void takeEndOfConnection();
    void tell();

    MainActor& m_actor;
    const Question m_question;
    std::function<void(const Answer& answer)> m_onAnswer;
    std::unique_ptr<ServerConnection> m_connection;
    HttpResponseReader m_response;
    QByteArray m_body;
    bool m_isConnected = false;
    std::optional<MainActor::TimerId> m_timer;
    Lifetime m_lifetime;
};

} // namespace talvera
