// SPDX-License-Identifier: MIT
#include "linux/language/UserServers.h"

#include "linux/language/ModelFile.h"
#include "linux/language/chatProtocol.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <utility>

namespace talvera {

namespace {

constexpr int success = 200;
constexpr int unavailable = 503;
constexpr Duration patience = seconds(10); // it may be swapped out

QJsonObject objectOf(const ServerInquiry::Answer& answer) {
    return QJsonDocument::fromJson(answer.body).object();
}

/// What has no model at all is another program.
UserServers::Known knownOf(std::vector<UserServers::Model> models) {
    std::sort(models.begin(), models.end(),
              [](const auto& one, const auto& other) { return one.name < other.name; });
    const auto state = models.empty() ? UserServers::State::Absent : UserServers::State::Ready;
    return {state, std::move(models)};
}

/// One that sends what it is told to another computer, and one that can't chat, are none for us.
bool isForUs(const QJsonObject& ollamaModel) {
    const auto name = ollamaModel.value(QStringLiteral("name")).toString();
    const auto family =
        ollamaModel.value(QStringLiteral("details")).toObject().value(QStringLiteral("family"));
    const bool isElsewhere = ollamaModel.contains(QStringLiteral("remote_host")) ||
                             ollamaModel.contains(QStringLiteral("remote_model")) ||
                             name.endsWith(QStringLiteral("-cloud")) ||
                             name.endsWith(QStringLiteral(":cloud"));
    return !name.isEmpty() && !isElsewhere && !family.toString().contains(QStringLiteral("bert"));
}

} // namespace

UserServers::UserServers(MainActor& actor, Ports ports)
    : m_actor(actor)
    , m_ports(ports) {}

void UserServers::ask(Kind kind) {
    if (of(kind).inquiry)
        of(kind).isAskedAgain = true; // its answer may be older than what we are to hear of
    else if (kind == Kind::Ollama)
        get(kind, "/api/tags", &UserServers::takeOllamaModels);
    else
        get(kind, "/health", &UserServers::takeLlamaHealth);
}

ModelServer UserServers::server(Kind kind, const QString& model) const {
    if (kind == Kind::Ollama)
        return {{{}, m_ports.ollama}, ChatProtocol::Ollama, model, ModelFile::contextOfLongestText};
    return {{{}, m_ports.llama}, ChatProtocol::Completions, model, 0};
}

void UserServers::get(Kind kind, const QByteArray& path,
                      void (UserServers::*take)(const ServerInquiry::Answer& answer)) {
    of(kind).inquiry = std::make_unique<ServerInquiry>(
        m_actor, ServerInquiry::Question{server(kind, {}).address, httpRequest("GET", path), patience},
        [this, take](const ServerInquiry::Answer& answer) { (this->*take)(answer); });
}

void UserServers::takeOllamaModels(const ServerInquiry::Answer& answer) {
    std::vector<Model> models;
    if (answer.status == success) {
        for (const auto& value : objectOf(answer).value(QStringLiteral("models")).toArray()) {
            const auto model = value.toObject();
            const auto details = model.value(QStringLiteral("details")).toObject();
            if (isForUs(model))
                models.push_back({model.value(QStringLiteral("name")).toString(),
                                  details.value(QStringLiteral("family")).toString()});
        }
    }
    settle(Kind::Ollama,
           answer.status == unavailable ? Known{State::Loading, {}} : knownOf(std::move(models)));
}

void UserServers::takeLlamaHealth(const ServerInquiry::Answer& answer) {
    if (answer.status == success &&
        objectOf(answer).value(QStringLiteral("status")).toString() == QStringLiteral("ok"))
        get(Kind::Llama, "/v1/models", &UserServers::takeLlamaModels);
    else
        takeLlamaModels({answer.status == unavailable ? unavailable : 0, answer.body});
}

/// Many programs listen on this port; this one says whose models they are, and that it loads.
void UserServers::takeLlamaModels(const ServerInquiry::Answer& answer) {
    std::vector<Model> models;
    const auto object = objectOf(answer);
    const auto error = object.value(QStringLiteral("error")).toObject();
    const bool isLoading = answer.status == unavailable && error.value(QStringLiteral("type")).toString() ==
                                                               QStringLiteral("unavailable_error");
    if (answer.status == success) {
        for (const auto& value : object.value(QStringLiteral("data")).toArray()) {
            const auto model = value.toObject();
            const auto name = model.value(QStringLiteral("id")).toString();
            if (model.value(QStringLiteral("owned_by")).toString() == QStringLiteral("llamacpp") &&
                !name.isEmpty())
                models.push_back({name, {}});
        }
    }
    settle(Kind::Llama, isLoading ? Known{State::Loading, {}} : knownOf(std::move(models)));
}

void UserServers::settle(Kind kind, Known known) {
    auto& server = of(kind);
    server.known = std::move(known);
    server.inquiry.reset();
    if (std::exchange(server.isAskedAgain, false))
        ask(kind);
    if (onAnswer)
        onAnswer(kind);
}

} // namespace talvera
