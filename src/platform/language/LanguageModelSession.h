// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <exception>
#include <functional>
#include <string>
#include <utility>

namespace talvera {

/// Why a model has not answered, or not to the end. `debugText` tells programs which case it is, by one of
/// the words below; `localizedDescription` is what a user may read where no word of ours fits. Neither holds
/// anything of what was said.
///
/// The words: "unsupportedLanguageOrLocale", "guardrailViolation" or "refusal", "exceededContextWindowSize",
/// "rateLimited", "assetsUnavailable" (the model isn't loaded, and has not been in time).
class LanguageModelError : public std::exception {
public:
    explicit LanguageModelError(QString debugText, QString localizedDescription = {})
        : m_debugText(std::move(debugText))
        , m_localizedDescription(std::move(localizedDescription))
        , m_what(QStringLiteral("%1: %2").arg(m_debugText, m_localizedDescription).toStdString()) {}

    const QString& debugText() const { return m_debugText; }
    const QString& localizedDescription() const { return m_localizedDescription; }
    const char* what() const noexcept override { return m_what.c_str(); }

private:
    QString m_debugText;
    QString m_localizedDescription;
    std::string m_what;
};

/// One request to the language model, under the instructions that the session was made with. Destroying it
/// cancels the request. Main thread only.
class LanguageModelSession {
public:
    /// Who hears the answer. Each call comes in a turn of the main thread, none from within streamResponse(),
    /// and any of them may destroy the session, after which no other comes.
    struct Listener {
        /// The whole answer so far, which begins with what the snapshot before held as a rule, but need not.
        std::function<void(const QString& content)> onSnapshot;
        /// The answer is whole. One that the model had to break off has failed instead.
        std::function<void()> onFinished;
        std::function<void(const LanguageModelError& error)> onFailed;
    };

    virtual ~LanguageModelSession() = default;

    /// Asks the model and returns at once; to be called once. Exactly one of onFinished and onFailed ends it.
    /// A model that has to load first answers when it has, and fails with "assetsUnavailable" if that takes
    /// too long. The sampling is left to the model, and no length of the answer is asked for.
    virtual void streamResponse(const QString& prompt, Listener listener) = 0;
};

} // namespace talvera
