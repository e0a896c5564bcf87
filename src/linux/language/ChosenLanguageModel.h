// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Lifetime.h"
#include "linux/language/ServerRequest.h"
#include "linux/language/UserServers.h"
#include "platform/language/LanguageModel.h"
#include "platform/language/LanguageModelChoice.h"

#include <memory>
#include <optional>
#include <vector>

namespace talvera {

class LlamaLanguageModel;
class PreferenceStore;

/// The language model that the user has chosen: a file, which a server of ours serves, or one of a server
/// that the user runs on this computer. Such a server is used only after its model has been chosen once,
/// since any program could listen there. Main thread only; it works from the event loop.
class ChosenLanguageModel final : public LanguageModel, public LanguageModelChoice {
public:
    struct Parts {
        MainActor& actor;
        PreferenceStore& preferences;
        LlamaLanguageModel& files;
    };
    struct Options {
        ServerRequest::Limits request{};
        UserServers::Ports ports{};
    };

    explicit ChosenLanguageModel(Parts parts);
    ChosenLanguageModel(Parts parts, Options options);
    ~ChosenLanguageModel() override;

    std::optional<UnavailableReason> unavailableReason() override;
    QStringList supportedLanguages() override;
    Subscription observe(std::function<void()> changed) override;
    bool tellsOfChanges() override;
    void prepare() override;
    std::unique_ptr<LanguageModelSession> makeSession(const QString& instructions,
                                                      Guardrails guardrails) override;

    std::vector<Offer> offers() override;
    void look() override;
    QString chosen() override;
    std::optional<Offer> missing() override;
    QString automatic() override;
    void choose(const QString& id) override;
    QString makeFolder(const QString& note) override;

private:
    /// A model of a server's.
    struct Served {
        UserServers::Kind kind;
        QString model;
    };
    /// What observers know of the servers.
    struct Known {
        std::optional<Offer> chosen;
        std::optional<UnavailableReason> reason;
        std::vector<Offer> offers;
        bool operator==(const Known&) const = default;
    };

    std::optional<Served> served() const;
    bool isThere(const Served& served) const;
    std::optional<UnavailableReason> reasonFor(const Served& served) const;
    std::optional<LanguageModelError> refusalOf(const Served& served) const;
    void take(UserServers::Kind kind);
    void load(const Served& served);
    Known known() const;
    std::vector<Offer> offersOfServers() const;
    void tellIfChanged();

    const Parts m_parts;
    const Options m_options;
    UserServers m_servers;
    std::unique_ptr<ServerInquiry> m_loading; ///< what makes the chosen one be loaded
    bool m_isToLoad = false;                  ///< once it has said that it is there
    Known m_known;
    Published<int> m_changes;
    Subscription m_changesOfFiles;
    Lifetime m_lifetime;
};

} // namespace talvera
