// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Lifetime.h"
#include "concurrency/MainActor.h"
#include "linux/language/ModelFolder.h"
#include "linux/language/ServerProcess.h"
#include "linux/language/ServerRequest.h"
#include "platform/language/LanguageModel.h"
#include "platform/language/LanguageModelChoice.h"

#include <QStringList>

#include <functional>
#include <optional>
#include <vector>

namespace talvera {

class Console;
class FileSystem;
class LlamaSession;
class PreferenceStore;
struct Directories;

/// The language model of a GGUF file, served by a `llama-server` of our own. The server is started when a
/// request is near, and ends when none has come for a while: idle costs no memory. Nothing leaves the
/// machine. Main thread only; it works from the event loop.
class LlamaLanguageModel final : public LanguageModel, public LanguageModelChoice {
public:
    struct Parts {
        MainActor& actor;
        FileSystem& files;
        PreferenceStore& preferences;
        const Directories& directories;
        Console& console;
    };
    struct Options {
        ServerRequest::Limits request{};
        Duration idle = seconds(600);   ///< until the server ends
        Duration loading = seconds(90); ///< that a request waits for the server
        /// How many bytes of memory programs can still have; nothing when it isn't known.
        std::function<std::optional<qint64>()> availableMemory = memoryOfThisMachine;
    };

    explicit LlamaLanguageModel(Parts parts);
    LlamaLanguageModel(Parts parts, Options options);
    ~LlamaLanguageModel() override;

    std::optional<UnavailableReason> unavailableReason() override;
    QStringList supportedLanguages() override;
    Subscription observe(std::function<void()> changed) override;
    bool tellsOfChanges() override { return m_folder.isWatched(); }
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

    /// The server has loaded its model, and can answer at once.
    bool isLoaded() const { return m_server.state() == ServerProcess::State::Ready; }

    /// How many requests are being answered, or wait for the server.
    std::size_t requests() const { return m_sessions.size(); }

    static std::optional<qint64> memoryOfThisMachine();

private:
    friend class LlamaSession;

    using Entry = ModelFolder::Entry;
    /// What observers know.
    struct Known {
        std::optional<UnavailableReason> reason;
        QStringList languages;
        std::vector<Offer> offers;
        QString chosen;
        bool operator==(const Known&) const = default;
    };

    // What sessions ask for
    void enter(LlamaSession& session);
    void serve(LlamaSession& session);
    void leave(LlamaSession& session);
    QString socket() const;

    Known known();
    const Entry* chosenEntry() const;
    const Entry* onlyEntry() const;
    bool serves(const Entry& entry) const;
    bool hasMemoryFor(const Entry& entry) const;
    bool ensureServer();
    void takeReady();
    void takeGone(bool wasLoading);
    void forEachWaiting(const std::function<void(LlamaSession&)>& visit);
    void restartIdleTime();
    void endServer();
    void reconsider();

    const Parts m_parts;
    const Options m_options;
    const QString m_program;
    ModelFolder m_folder;
    ServerProcess m_server;
    std::optional<Entry> m_served;     ///< what the server that runs was started with
    std::optional<Entry> m_unloadable; ///< what it couldn't load
    std::vector<LlamaSession*> m_sessions;
    std::optional<MainActor::TimerId> m_idleTimer;
    Known m_known;
    Published<int> m_changes;
    Lifetime m_lifetime;
};

} // namespace talvera
