// SPDX-License-Identifier: MIT
#include "linux/language/LlamaLanguageModel.h"

#include "linux/language/LlamaSession.h"
#include "linux/language/modelLanguages.h"
#include "platform/system/Console.h"
#include "platform/system/Directories.h"
#include "platform/system/FileSystem.h"
#include "platform/system/PreferenceStore.h"

#include <QFile>

#include <algorithm>
#include <utility>

namespace talvera {

namespace {

const QString preference = QStringLiteral("languageModel");

QStringList serverArguments(const ModelFolder::Entry& entry, const QString& socket) {
    return {
        QStringLiteral("-m"),          entry.path,
        QStringLiteral("--host"),      socket,
        QStringLiteral("-c"),          QString::number(entry.model.servedContext()),
        QStringLiteral("-np"), // one text at a time
        QStringLiteral("1"),
        QStringLiteral("--cache-ram"), // texts that were answered are nobody's business
        QStringLiteral("0"),           QStringLiteral("--reasoning"),
        QStringLiteral("off"),         QStringLiteral("--offline"),
        QStringLiteral("--no-ui"),     QStringLiteral("--no-slots"),
    };
}

} // namespace

LlamaLanguageModel::LlamaLanguageModel(Parts parts)
    : LlamaLanguageModel(parts, Options{}) {}

LlamaLanguageModel::LlamaLanguageModel(Parts parts, Options options)
    : m_parts(parts)
    , m_options(std::move(options))
    , m_program(parts.directories.resources + QStringLiteral("/Resources/llama-server"))
    , m_folder(parts.directories.applicationSupport + QStringLiteral("/Talvera/language-models"))
    , m_server(parts.actor)
    , m_known(known()) {
    m_folder.onChange = [this] { reconsider(); };
    m_server.onReady = [this] { takeReady(); };
    m_server.onGone = [this](bool wasLoading) { takeGone(wasLoading); };
}

LlamaLanguageModel::~LlamaLanguageModel() {
    if (m_idleTimer)
        m_parts.actor.cancelTimer(*m_idleTimer);
    endServer();
}

std::optional<LanguageModel::UnavailableReason> LlamaLanguageModel::unavailableReason() {
    if (!m_parts.files.isExecutableFile(m_program))
        return UnavailableReason::DeviceNotEligible;
    const auto* const entry = chosenEntry();
    if (entry == nullptr)
        return UnavailableReason::IntelligenceOff;
    if (serves(*entry)) // it has its memory
        return std::nullopt;
    if ((m_unloadable && m_unloadable->isSameFile(*entry)) || !hasMemoryFor(*entry))
        return UnavailableReason::DeviceNotEligible;
    return std::nullopt;
}

QStringList LlamaLanguageModel::supportedLanguages() {
    const auto* const entry = chosenEntry();
    return entry == nullptr ? QStringList() : modelLanguages(entry->model);
}

Subscription LlamaLanguageModel::observe(std::function<void()> changed) {
    return m_changes.observe([changed = std::move(changed)](int) { changed(); });
}

/// The one question of a press; the rest is known by the folder's watch and the server's word.
void LlamaLanguageModel::prepare() {
    look();
    if (!unavailableReason() && ensureServer())
        restartIdleTime();
}

std::unique_ptr<LanguageModelSession> LlamaLanguageModel::makeSession(const QString& instructions,
                                                                      Guardrails) {
    return std::make_unique<LlamaSession>(*this, instructions);
}

std::vector<LanguageModelChoice::Offer> LlamaLanguageModel::offers() {
    std::vector<Offer> offers;
    for (const auto& entry : m_folder.entries())
        offers.push_back({entry.fileName, entry.model.name.isEmpty() ? entry.fileName : entry.model.name});
    return offers;
}

void LlamaLanguageModel::look() {
    m_folder.look();
    reconsider();
}

QString LlamaLanguageModel::chosen() {
    const auto* const entry = chosenEntry();
    return entry == nullptr ? QString() : entry->fileName;
}

std::optional<LanguageModelChoice::Offer> LlamaLanguageModel::missing() {
    const auto wanted = m_parts.preferences.string(preference);
    if (!wanted || chosenEntry() != nullptr)
        return std::nullopt;
    return Offer{*wanted, *wanted};
}

QString LlamaLanguageModel::automatic() {
    const auto* const entry = onlyEntry();
    return entry == nullptr ? QString() : entry->fileName;
}

void LlamaLanguageModel::choose(const QString& id) {
    if (id.isEmpty())
        m_parts.preferences.remove(preference);
    else
        m_parts.preferences.set(preference, id);
    reconsider();
}

QString LlamaLanguageModel::makeFolder(const QString& note) {
    m_parts.files.createDirectories(m_folder.directory());
    m_parts.files.write(m_folder.directory() + QStringLiteral("/README.txt"), note.toUtf8());
    m_folder.look();
    return m_folder.directory();
}

std::optional<qint64> LlamaLanguageModel::memoryOfThisMachine() {
    QFile file(QStringLiteral("/proc/meminfo"));
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    for (const auto& line : file.readAll().split('\n')) {
        constexpr QByteArrayView name("MemAvailable:");
        constexpr qint64 unit = 1024;
        if (!line.startsWith(name))
            continue;
        bool isNumber = false;
        const auto value = line.mid(name.size()).simplified().split(' ').front().toLongLong(&isNumber);
        return isNumber ? std::optional(value * unit) : std::nullopt;
    }
    return std::nullopt;
}

void LlamaLanguageModel::enter(LlamaSession& session) {
    m_sessions.push_back(&session);
    if (m_idleTimer)
        m_parts.actor.cancelTimer(*m_idleTimer);
    m_idleTimer.reset();
}

void LlamaLanguageModel::serve(LlamaSession& session) {
    if (unavailableReason() || !ensureServer())
        session.fail();
    else if (isLoaded())
        session.send();
}

void LlamaLanguageModel::leave(LlamaSession& session) {
    std::erase(m_sessions, &session);
    if (!m_sessions.empty())
        return;
    const auto* const entry = chosenEntry();
    if (m_served && (entry == nullptr || !serves(*entry)))
        endServer(); // of a model that was taken away meanwhile
    restartIdleTime();
}

/// Short, since the name of a socket may have 107 bytes.
QString LlamaLanguageModel::socket() const {
    return m_parts.directories.temporary + QStringLiteral("/llm.sock");
}

const LlamaLanguageModel::Entry* LlamaLanguageModel::chosenEntry() const {
    const auto wanted = m_parts.preferences.string(preference);
    if (!wanted)
        return onlyEntry();
    const auto& entries = m_folder.entries();
    const auto found = std::find_if(entries.begin(), entries.end(),
                                    [&wanted](const Entry& entry) { return entry.fileName == *wanted; });
    return found == entries.end() ? nullptr : &*found;
}

const LlamaLanguageModel::Entry* LlamaLanguageModel::onlyEntry() const {
    const auto& entries = m_folder.entries();
    return entries.size() == 1 ? &entries.front() : nullptr;
}

bool LlamaLanguageModel::serves(const Entry& entry) const {
    return m_served && m_served->isSameFile(entry);
}

bool LlamaLanguageModel::hasMemoryFor(const Entry& entry) const {
    const auto available = m_options.availableMemory();
    return !available || entry.model.memoryNeeded() <= *available;
}

/// False when it can't be started.
bool LlamaLanguageModel::ensureServer() {
    const auto* const entry = chosenEntry();
    if (serves(*entry))
        return true;
    try {
        endServer();
        m_server.start(m_program, serverArguments(*entry, socket()), m_parts.directories.temporary);
        m_served = *entry;
        return true;
    } catch (const PlatformError& error) {
        m_parts.console.log(QStringLiteral("[languageModel] the server can't be started: ") +
                            error.message());
        return false;
    }
}

void LlamaLanguageModel::takeReady() {
    forEachWaiting([](LlamaSession& session) { session.send(); });
}

void LlamaLanguageModel::takeGone(bool wasLoading) {
    if (wasLoading) {
        m_parts.console.log(QStringLiteral("[languageModel] the server could not load ") +
                            m_served->fileName);
        m_unloadable = m_served;
    }
    m_served.reset();
    reconsider();
    forEachWaiting([this, wasLoading](LlamaSession& session) {
        if (wasLoading)
            session.fail();
        else
            serve(session);
    });
}

/// What is being answered goes its own way. Each call may end sessions.
void LlamaLanguageModel::forEachWaiting(const std::function<void(LlamaSession&)>& visit) {
    const auto token = m_lifetime.token();
    const auto sessions = m_sessions;
    for (auto* const session : sessions) {
        if (!token.isAlive())
            return;
        const bool isThere = std::find(m_sessions.begin(), m_sessions.end(), session) != m_sessions.end();
        if (isThere && session->isWaiting())
            visit(*session);
    }
}

/// Only while a server runs that nobody asks.
void LlamaLanguageModel::restartIdleTime() {
    if (m_idleTimer)
        m_parts.actor.cancelTimer(*m_idleTimer);
    m_idleTimer.reset();
    if (m_served && m_sessions.empty())
        m_idleTimer = m_parts.actor.startTimer(m_options.idle, [this] {
            m_idleTimer.reset();
            endServer();
        });
}

void LlamaLanguageModel::endServer() {
    m_server.end();
    m_served.reset();
    QFile::remove(socket());
}

LlamaLanguageModel::Known LlamaLanguageModel::known() {
    return {unavailableReason(), supportedLanguages(), offers(), chosen()};
}

/// Tells the observers if there is something to tell. A model that isn't chosen any more is let go, once
/// nobody waits for its answer.
void LlamaLanguageModel::reconsider() {
    const auto* const entry = chosenEntry();
    if (m_served && m_sessions.empty() && (entry == nullptr || !serves(*entry)))
        endServer();
    auto now = known();
    if (now == m_known)
        return;
    m_known = std::move(now);
    m_parts.actor.post(m_lifetime.ifAlive([this] { m_changes.set(m_changes.get() + 1); }));
}

} // namespace talvera
