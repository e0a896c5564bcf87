// SPDX-License-Identifier: MIT
#include "linux/language/ChosenLanguageModel.h"

#include "linux/language/LlamaLanguageModel.h"
#include "linux/language/ServedSession.h"
#include "linux/language/chatProtocol.h"
#include "linux/language/modelLanguages.h"
#include "linux/language/serverFailures.h"
#include "platform/system/PreferenceStore.h"

#include <QFileInfo>

#include <algorithm>
#include <array>
#include <utility>

namespace talvera {

namespace {

using Kind = UserServers::Kind;
using State = UserServers::State;
using Offer = LanguageModelChoice::Offer;

const QString preference = QStringLiteral("languageModel");
constexpr Duration loadingTime = seconds(300); // of a large model from a slow disk

/// How a server is called, for the user; and in the ids of its models, which no name of a file can be like.
QString nameOf(Kind kind) {
    return kind == Kind::Ollama ? QStringLiteral("Ollama") : QStringLiteral("llama-server");
}

QString beginOfIds(Kind kind) {
    return kind == Kind::Ollama ? QStringLiteral("ollama/") : QStringLiteral("llama-server/");
}

/// What has no other name goes by the path of its file.
QString shortName(const QString& model) {
    return model.startsWith(u'/') ? QFileInfo(model).fileName() : model;
}

Offer offerOf(Kind kind, const QString& model) {
    return {beginOfIds(kind) + model, QStringLiteral("%1 (%2)").arg(shortName(model), nameOf(kind))};
}

} // namespace

ChosenLanguageModel::ChosenLanguageModel(Parts parts)
    : ChosenLanguageModel(parts, Options{}) {}

ChosenLanguageModel::ChosenLanguageModel(Parts parts, Options options)
    : m_parts(parts)
    , m_options(options)
    , m_servers(parts.actor, options.ports)
    , m_changesOfFiles(parts.files.observe([this] { m_changes.set(m_changes.get() + 1); })) {
    m_servers.onAnswer = [this](Kind kind) { take(kind); };
    if (const auto chosen = served())
        m_servers.ask(chosen->kind);
    m_known = known();
}

ChosenLanguageModel::~ChosenLanguageModel() = default;

std::optional<LanguageModel::UnavailableReason> ChosenLanguageModel::unavailableReason() {
    const auto chosen = served();
    return chosen ? reasonFor(*chosen) : m_parts.files.unavailableReason();
}

QStringList ChosenLanguageModel::supportedLanguages() {
    const auto chosen = served();
    if (!chosen)
        return m_parts.files.supportedLanguages();
    for (const auto& model : m_servers.known(chosen->kind).models) {
        if (model.name == chosen->model)
            return modelLanguages(
                QStringList{shortName(model.name), model.name.section(u'/', -1), model.family});
    }
    return {};
}

Subscription ChosenLanguageModel::observe(std::function<void()> changed) {
    return m_changes.observe([changed = std::move(changed)](int) { changed(); });
}

/// A server that isn't ours tells nothing by itself, but asking here again and again would find out nothing
/// either.
bool ChosenLanguageModel::tellsOfChanges() {
    return served() || m_parts.files.tellsOfChanges();
}

void ChosenLanguageModel::prepare() {
    const auto chosen = served();
    if (!chosen) {
        m_parts.files.prepare();
        return;
    }
    m_isToLoad = true;
    m_servers.ask(chosen->kind);
}

std::unique_ptr<LanguageModelSession> ChosenLanguageModel::makeSession(const QString& instructions,
                                                                       Guardrails guardrails) {
    const auto chosen = served();
    if (!chosen)
        return m_parts.files.makeSession(instructions, guardrails);
    return std::make_unique<ServedSession>(
        ServedSession::Parts{.actor = m_parts.actor,
                             .limits = m_options.request,
                             .server = m_servers.server(chosen->kind, chosen->model),
                             .refusal = [this, served = *chosen] { return refusalOf(served); },
                             .onFailure = [this, kind = chosen->kind] { m_servers.ask(kind); }},
        instructions);
}

std::vector<Offer> ChosenLanguageModel::offers() {
    auto offers = m_parts.files.offers();
    for (auto& offer : offersOfServers())
        offers.push_back(std::move(offer));
    return offers;
}

void ChosenLanguageModel::look() {
    m_parts.files.look();
    for (const auto kind : UserServers::kinds)
        m_servers.ask(kind);
}

QString ChosenLanguageModel::chosen() {
    const auto chosen = served();
    if (!chosen)
        return m_parts.files.chosen();
    return isThere(*chosen) ? offerOf(chosen->kind, chosen->model).id : QString();
}

std::optional<Offer> ChosenLanguageModel::missing() {
    const auto chosen = served();
    if (!chosen)
        return m_parts.files.missing();
    return isThere(*chosen) ? std::nullopt : std::optional(offerOf(chosen->kind, chosen->model));
}

QString ChosenLanguageModel::automatic() {
    return m_parts.files.automatic();
}

void ChosenLanguageModel::choose(const QString& id) {
    m_parts.files.choose(id);
    if (const auto chosen = served())
        m_servers.ask(chosen->kind);
    m_loading.reset();
    tellIfChanged();
}

QString ChosenLanguageModel::makeFolder(const QString& note) {
    return m_parts.files.makeFolder(note);
}

std::optional<ChosenLanguageModel::Served> ChosenLanguageModel::served() const {
    const auto id = m_parts.preferences.string(preference).value_or(QString());
    for (const auto kind : UserServers::kinds) {
        const auto begin = beginOfIds(kind);
        if (id.startsWith(begin) && id.size() > begin.size())
            return Served{kind, id.mid(begin.size())};
    }
    return std::nullopt;
}

/// While it can't tell, for all that is known.
bool ChosenLanguageModel::isThere(const Served& served) const {
    const auto& known = m_servers.known(served.kind);
    return known.state == State::Unknown || known.state == State::Loading || !reasonFor(served);
}

std::optional<LanguageModel::UnavailableReason> ChosenLanguageModel::reasonFor(const Served& served) const {
    const auto& known = m_servers.known(served.kind);
    if (known.state == State::Unknown || known.state == State::Loading)
        return UnavailableReason::ModelNotReady;
    const bool hasIt = std::any_of(known.models.begin(), known.models.end(),
                                   [&](const auto& model) { return model.name == served.model; });
    return hasIt ? std::nullopt : std::optional(UnavailableReason::IntelligenceOff);
}

/// Nothing is told to a server that isn't the chosen one for all that is known.
std::optional<LanguageModelError> ChosenLanguageModel::refusalOf(const Served& served) const {
    const auto reason = reasonFor(served);
    if (!reason)
        return std::nullopt;
    return *reason == UnavailableReason::ModelNotReady ? modelIsAway() : modelIsOff();
}

void ChosenLanguageModel::take(Kind kind) {
    if (const auto chosen = served();
        chosen && chosen->kind == kind && std::exchange(m_isToLoad, false) && !reasonFor(*chosen))
        load(*chosen);
    tellIfChanged();
}

/// While the user speaks. Ollama loads a model only when it is asked something, and lets go of it as its user
/// has set.
void ChosenLanguageModel::load(const Served& served) {
    if (served.kind != Kind::Ollama || m_loading)
        return;
    const auto server = m_servers.server(served.kind, served.model);
    m_loading = std::make_unique<ServerInquiry>(
        m_parts.actor, ServerInquiry::Question{server.address, loadRequest(server), loadingTime},
        [this](const ServerInquiry::Answer&) { m_loading.reset(); });
}

ChosenLanguageModel::Known ChosenLanguageModel::known() const {
    Known known{std::nullopt, std::nullopt, offersOfServers()};
    if (const auto chosen = served()) {
        known.chosen = offerOf(chosen->kind, chosen->model);
        known.reason = reasonFor(*chosen);
    }
    return known;
}

/// What they have, and the chosen one as long as its server can't tell.
std::vector<Offer> ChosenLanguageModel::offersOfServers() const {
    std::vector<Offer> offers;
    for (const auto kind : UserServers::kinds) {
        for (const auto& model : m_servers.known(kind).models)
            offers.push_back(offerOf(kind, model.name));
    }
    if (const auto chosen = served(); chosen && isThere(*chosen) && reasonFor(*chosen))
        offers.push_back(offerOf(chosen->kind, chosen->model));
    return offers;
}

void ChosenLanguageModel::tellIfChanged() {
    auto now = known();
    if (now == m_known)
        return;
    m_known = std::move(now);
    m_parts.actor.post(m_lifetime.ifAlive([this] { m_changes.set(m_changes.get() + 1); }));
}

} // namespace talvera
