// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/MainActor.h"
#include "linux/language/ModelServer.h"
#include "linux/language/ServerInquiry.h"

#include <QString>

#include <array>
#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

namespace talvera {

/// The servers of language models that the user may run on this computer, each on the port that is its own
/// as a rule, and the models that they have. They are asked when that is called for, and never else; what
/// they are asked tells nothing of the user. Main thread only; it works from the event loop.
class UserServers {
public:
    enum class Kind { Ollama, Llama };
    enum class State {
        Unknown, ///< it hasn't been asked yet
        Absent,  ///< nobody listens, or another program
        Loading,
        Ready,
    };
    struct Model {
        QString name;   ///< at the server
        QString family; ///< may be empty

        bool operator==(const Model&) const = default;
    };
    struct Ports {
        quint16 ollama = 11434;
        quint16 llama = 8080;
    };
    /// What is known of one.
    struct Known {
        State state = State::Unknown;
        std::vector<Model> models; ///< once it is ready; by name

        bool operator==(const Known&) const = default;
    };

    static constexpr std::array kinds{Kind::Ollama, Kind::Llama};

    UserServers(MainActor& actor, Ports ports);

    /// Asks this one what it has; only once more while it is being asked.
    void ask(Kind kind);

    const Known& known(Kind kind) const { return of(kind).known; }

    /// Called when one has answered, or has been found not to.
    std::function<void(Kind kind)> onAnswer;

    /// Its model, as a chat asks it.
    ModelServer server(Kind kind, const QString& model) const;

private:
    struct Server {
        Known known;
        std::unique_ptr<ServerInquiry> inquiry; ///< under way
        bool isAskedAgain = false;
    };

    void get(Kind kind, const QByteArray& path,
             void (UserServers::*take)(const ServerInquiry::Answer& answer));
    void takeOllamaModels(const ServerInquiry::Answer& answer);
    void takeLlamaHealth(const ServerInquiry::Answer& answer);
    void takeLlamaModels(const ServerInquiry::Answer& answer);
    void settle(Kind kind, Known known);

    Server& of(Kind kind) { return m_servers[static_cast<std::size_t>(kind)]; }
    const Server& of(Kind kind) const { return m_servers[static_cast<std::size_t>(kind)]; }

    MainActor& m_actor;
    const Ports m_ports;
    std::array<Server, kinds.size()> m_servers;
};

} // namespace talvera
