// SPDX-License-Identifier: MIT
#include "language/LoadedModel.h"

#include "platform/language/LanguageModelSession.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QFile>

#include <array>
#include <cstring>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace talvera::bench {

namespace {

constexpr std::chrono::seconds loadingPatience{120};

/// Counts the texts of a stream of events as they come.
class PieceCounter {
public:
    int take(std::string_view bytes) {
        m_unread += bytes;
        std::size_t from = 0;
        for (;;) {
            const auto at = m_unread.find(mark, from);
            if (at == std::string::npos || at + mark.size() == m_unread.size())
                break;
            from = at + mark.size();
            m_pieces += m_unread[from] != '"' ? 1 : 0;
        }
        // What may be the beginning of a mark, or a mark whose text is still to come.
        const auto kept = std::min(m_unread.size() - from, mark.size());
        m_unread.erase(0, m_unread.size() - kept);
        return m_pieces;
    }

private:
    static constexpr std::string_view mark = R"("content":")";
    std::string m_unread;
    int m_pieces = 0;
};

class Socket {
public:
    explicit Socket(const QString& path)
        : m_socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        const auto name = QFile::encodeName(path);
        if (std::size_t(name.size()) >= sizeof address.sun_path)
            throw std::runtime_error("the server's address is too long");
        std::memcpy(address.sun_path, name.constData(), std::size_t(name.size()));
        if (::connect(m_socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
            throw std::runtime_error("the server can't be reached");
    }
    ~Socket() { ::close(m_socket); }
    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;

    void send(const QByteArray& bytes) const {
        if (::send(m_socket, bytes.constData(), std::size_t(bytes.size()), MSG_NOSIGNAL) != bytes.size())
            throw std::runtime_error("the server takes no question");
    }
    /// The next bytes; none at the end.
    std::string_view receive() {
        const auto count = ::recv(m_socket, m_bytes.data(), m_bytes.size(), 0);
        return {m_bytes.data(), count > 0 ? std::size_t(count) : 0};
    }

private:
    int m_socket;
    std::array<char, 1 << 16> m_bytes;
};

} // namespace

LoadedModel::LoadedModel(const QString& file)
    : m_directories{m_root.filePath(QStringLiteral("t")), m_root.filePath(QStringLiteral("data")),
                    m_root.filePath(QStringLiteral("config")), m_root.filePath(QStringLiteral("opt"))} {
    const auto models = m_directories.applicationSupport + QStringLiteral("/Talvera/language-models");
    const auto resources = m_directories.resources + QStringLiteral("/Resources");
    for (const auto& directory : {m_directories.temporary, models, resources})
        QDir().mkpath(directory);
    QFile::setPermissions(m_directories.temporary, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    QFile::link(QStringLiteral(TALVERA_LLAMA_SERVER), resources + QStringLiteral("/llama-server"));
    QFile::link(file, models + QStringLiteral("/m.gguf"));
    m_model.emplace(LlamaLanguageModel::Parts{m_actor, m_files, m_preferences, m_directories, m_console});
    m_model->prepare();
    const auto deadline = Clock::now() + loadingPatience;
    while (!m_model->isLoaded()) {
        if (m_model->unavailableReason() || Clock::now() > deadline)
            throw std::runtime_error("the language model can't be loaded");
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
    }
}

AnswerTime LoadedModel::ask(const ChatQuestion& question) {
    AnswerTime time;
    bool hasEnded = false;
    std::optional<LanguageModelError> failure;
    const auto begin = Clock::now();
    const auto now = [&begin] { return milliseconds(Clock::now() - begin); };
    const auto session = m_model->makeSession(question.instructions, LanguageModel::Guardrails::Default);
    LanguageModelSession::Listener listener;
    listener.onSnapshot = [&](const QString&) {
        time.lastPiece = now();
        if (time.pieces++ == 0)
            time.firstPiece = time.lastPiece;
        hasEnded = time.pieces == mostPieces;
    };
    listener.onFinished = [&hasEnded] { hasEnded = true; };
    listener.onFailed = [&](const LanguageModelError& error) {
        failure = error;
        hasEnded = true;
    };
    session->streamResponse(question.prompt, listener);
    while (!hasEnded)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    if (failure)
        throw *failure;
    return time;
}

AnswerTime LoadedModel::askBare(const ChatQuestion& question) const {
    AnswerTime time;
    PieceCounter counter;
    const auto begin = Clock::now();
    Socket socket(m_directories.temporary + QStringLiteral("/llm.sock"));
    socket.send(chatRequest({}, question));
    for (auto bytes = socket.receive(); !bytes.empty() && time.pieces < mostPieces;
         bytes = socket.receive()) {
        const auto before = std::exchange(time.pieces, counter.take(bytes));
        if (time.pieces > before)
            time.lastPiece = milliseconds(Clock::now() - begin);
        if (before == 0)
            time.firstPiece = time.lastPiece;
    }
    if (time.pieces == 0)
        throw std::runtime_error("the server answers nothing");
    return time;
}

} // namespace talvera::bench
