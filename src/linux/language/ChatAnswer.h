// SPDX-License-Identifier: MIT
#pragma once

#include "linux/language/ModelServer.h"
#include "linux/language/ThoughtFilter.h"
#include "platform/language/LanguageModelSession.h"

#include <QByteArray>
#include <QString>

#include <optional>
#include <utility>

namespace talvera {

/// What the events of a chat's answer add up to.
class ChatAnswer {
public:
    /// `mostCharacters`: an answer of more goes on for ever.
    explicit ChatAnswer(qsizetype mostCharacters, ModelServer server = {})
        : m_server(std::move(server))
        , m_mostCharacters(mostCharacters) {}

    /// Takes the data of the next event; nothing more once it has ended.
    void take(const QByteArray& event);

    /// Nothing more comes.
    void takeEnd();

    /// The answer so far, without what the model has thought.
    const QString& text() const { return m_filter.text(); }

    /// It has ended, well if there is no failure.
    bool hasEnded() const { return m_hasEnded; }
    const std::optional<LanguageModelError>& failure() const { return m_failure; }

private:
    void takeReason(const QString& reason);
    void fail(const LanguageModelError& error);

    const ModelServer m_server;
    const qsizetype m_mostCharacters;
    ThoughtFilter m_filter;
    bool m_hasEnded = false;
    std::optional<LanguageModelError> m_failure;
};

} // namespace talvera
