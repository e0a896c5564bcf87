// SPDX-License-Identifier: MIT
#include "linux/atspi/AtspiBus.h"

#include "linux/atspi/DescribedElement.h"

#include <atspi/atspi-constants.h>

#include <algorithm>
#include <deque>
#include <utility>

namespace talvera {

namespace {

constexpr std::size_t mostObjects = 5000; ///< looked at in one search
constexpr std::size_t mostAtOnce = 32;    ///< objects asked before the first answer is read

constexpr char accessible[] = "org.a11y.atspi.Accessible";
const AtspiObject registry{"org.a11y.atspi.Registry", "/org/a11y/atspi/registry"};
const AtspiObject desktop{"org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root"};
const AtspiObject busDaemon{"org.freedesktop.DBus", "/org/freedesktop/DBus"};

bool has(std::uint64_t states, int state) {
    return (states >> state & 1) != 0;
}

/// An object with more children than that isn't asked for them, since it would make them all up, and send
/// them in one message: 47 MB of our memory for 100,000, and an application that is busy for seconds.
bool canBeListed(std::size_t childCount) {
    return childCount > 0 && childCount <= mostObjects;
}

} // namespace

/// What comes back for a question. It outlives the bus when no caller waited for it.
struct AtspiBus::Answer {
    bool done = false;
    GlibPtr<GVariant> value;
};

AtspiBus::AtspiBus(GlibPtr<GDBusConnection> connection)
    : m_connection(std::move(connection))
    , m_answers(g_main_context_new()) {}

AtspiBus::~AtspiBus() {
    for (const auto& [subscription, onSignal] : m_subscriptions)
        g_dbus_connection_signal_unsubscribe(m_connection.get(), subscription);
    g_dbus_connection_close(m_connection.get(), nullptr, nullptr, nullptr);
    // What no caller waited for comes to its end, at the latest with its deadline.
    while (m_underWay > 0)
        g_main_context_iteration(m_answers.get(), TRUE);
}

void AtspiBus::follow(const char* event, const char* interface, const char* signal, const char* detail,
                      OnSignal onSignal) {
    const auto deliver = [](GDBusConnection*, const char* sender, const char* path, const char*, const char*,
                            GVariant* arguments, gpointer receiver) {
        (*static_cast<OnSignal*>(receiver))({sender, path}, arguments);
    };
    auto receiver = std::make_unique<OnSignal>(std::move(onSignal));
    const auto subscription =
        g_dbus_connection_signal_subscribe(m_connection.get(), nullptr, interface, signal, nullptr, detail,
                                           G_DBUS_SIGNAL_FLAGS_NONE, deliver, receiver.get(), nullptr);
    m_subscriptions.emplace(subscription, std::move(receiver));
    g_dbus_connection_call(m_connection.get(), registry.service.c_str(), registry.path.c_str(),
                           "org.a11y.atspi.Registry", "RegisterEvent", g_variant_new("(s)", event), nullptr,
                           G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr, nullptr);
}

AtspiBus::Question AtspiBus::call(const AtspiObject& object, const char* interface, const char* method,
                                  GVariant* arguments, const char* answerType, Deadline deadline) {
    auto question = std::make_shared<Answer>();
    const GlibPtr<GVariant> ownedArguments(arguments ? g_variant_ref_sink(arguments) : nullptr);
    // Names come from applications, which may say anything.
    if (!g_dbus_is_name(object.service.c_str())) {
        question->done = true;
        return question;
    }
    struct Pending {
        AtspiBus* bus;
        Question question;
    };
    const auto finish = [](GObject* connection, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<Pending> pending(static_cast<Pending*>(data));
        pending->question->value.reset(
            g_dbus_connection_call_finish(G_DBUS_CONNECTION(connection), result, nullptr));
        pending->question->done = true;
        --pending->bus->m_underWay;
    };
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
    const WithThreadDefaultContext answersHere(m_answers.get());
    ++m_underWay;
    g_dbus_connection_call(m_connection.get(), object.service.c_str(), object.path.c_str(), interface, method,
                           ownedArguments.get(), G_VARIANT_TYPE(answerType), G_DBUS_CALL_FLAGS_NO_AUTO_START,
                           int(std::max<decltype(left)>(1, left)), nullptr, finish,
                           new Pending{this, question});
    return question;
}

AtspiBus::Question AtspiBus::askStates(const AtspiObject& object, Deadline deadline) {
    return call(object, accessible, "GetState", nullptr, "(au)", deadline);
}

AtspiBus::Question AtspiBus::askChildCount(const AtspiObject& object, Deadline deadline) {
    return call(object, "org.freedesktop.DBus.Properties", "Get",
                g_variant_new("(ss)", accessible, "ChildCount"), "(v)", deadline);
}

AtspiBus::Question AtspiBus::askChildren(const AtspiObject& object, Deadline deadline) {
    return call(object, accessible, "GetChildren", nullptr, "(a(so))", deadline);
}

GVariant* AtspiBus::await(const Question& question) {
    while (!question->done)
        g_main_context_iteration(m_answers.get(), TRUE);
    return question->value.get();
}

std::uint64_t AtspiBus::states(const Question& question) {
    auto* answer = await(question);
    if (!answer)
        return 0;
    const GlibPtr<GVariant> words(g_variant_get_child_value(answer, 0));
    std::uint64_t states = 0;
    for (gsize i = 0; i < std::min<gsize>(2, g_variant_n_children(words.get())); ++i) {
        guint32 word = 0;
        g_variant_get_child(words.get(), i, "u", &word);
        states |= std::uint64_t(word) << (32 * i);
    }
    return states;
}

std::optional<std::size_t> AtspiBus::childCount(const Question& question) {
    auto* answer = await(question);
    if (!answer)
        return std::nullopt;
    GVariant* value = nullptr;
    g_variant_get(answer, "(v)", &value);
    const GlibPtr<GVariant> count(value);
    const bool isCount = g_variant_is_of_type(count.get(), G_VARIANT_TYPE_INT32) != 0;
    return isCount ? std::size_t(std::max(0, g_variant_get_int32(count.get()))) : 0;
}

std::vector<AtspiObject> AtspiBus::children(const Question& question) {
    auto* answer = await(question);
    if (!answer)
        return {};
    const GlibPtr<GVariant> list(g_variant_get_child_value(answer, 0));
    const gsize count = g_variant_n_children(list.get());
    std::vector<AtspiObject> objects;
    for (gsize i = 0; i < std::min<gsize>(mostObjects, count); ++i) {
        const char* service = nullptr;
        const char* path = nullptr;
        g_variant_get_child(list.get(), i, "(&s&o)", &service, &path);
        objects.push_back({service, path});
    }
    return objects;
}

std::optional<std::vector<AtspiObject>> AtspiBus::childrenOf(const AtspiObject& object, Deadline deadline) {
    const auto count = childCount(askChildCount(object, deadline));
    if (!count)
        return std::nullopt;
    return canBeListed(*count) ? children(askChildren(object, deadline)) : std::vector<AtspiObject>();
}

std::vector<std::string> AtspiBus::applications(Deadline deadline) {
    std::vector<std::string> services;
    for (const auto& root : childrenOf(desktop, deadline).value_or(std::vector<AtspiObject>()))
        services.push_back(root.service);
    return services;
}

std::optional<pid_t> AtspiBus::process(const std::string& service, Deadline deadline) {
    const auto question = call(busDaemon, "org.freedesktop.DBus", "GetConnectionUnixProcessID",
                               g_variant_new("(s)", service.c_str()), "(u)", deadline);
    auto* answer = await(question);
    if (!answer)
        return std::nullopt;
    guint32 process = 0;
    g_variant_get(answer, "(u)", &process);
    return pid_t(process);
}

std::optional<AtspiDescription> AtspiBus::describe(const AtspiObject& object, Deadline deadline) {
    const auto roleQuestion = call(object, accessible, "GetRole", nullptr, "(u)", deadline);
    const auto stateQuestion = askStates(object, deadline);
    const auto interfaceQuestion = call(object, accessible, "GetInterfaces", nullptr, "(as)", deadline);
    auto* role = await(roleQuestion);
    auto* interfaces = await(interfaceQuestion);
    if (!role || !interfaces || !await(stateQuestion))
        return std::nullopt;
    AtspiDescription description;
    g_variant_get(role, "(u)", &description.role);
    description.states = states(stateQuestion);
    const GlibPtr<GVariant> names(g_variant_get_child_value(interfaces, 0));
    for (gsize i = 0; i < g_variant_n_children(names.get()); ++i) {
        const char* name = nullptr;
        g_variant_get_child(names.get(), i, "&s", &name);
        description.interfaces.emplace_back(name);
    }
    if (description.role == ATSPI_ROLE_COMBO_BOX && holdsField(object, deadline))
        description.states |= std::uint64_t(1) << ATSPI_STATE_EDITABLE;
    return description;
}

/// Some toolkits put the focus on the combo box itself, and say only of the field in it that one can write
/// there.
bool AtspiBus::holdsField(const AtspiObject& object, Deadline deadline) {
    auto parts = childrenOf(object, deadline).value_or(std::vector<AtspiObject>());
    parts.resize(std::min(parts.size(), mostAtOnce));
    std::vector<Question> questions;
    for (const auto& part : parts)
        questions.push_back(askStates(part, deadline));
    return std::any_of(questions.begin(), questions.end(), [this](const Question& question) {
        return has(states(question), ATSPI_STATE_EDITABLE);
    });
}

std::optional<std::vector<AtspiObject>> AtspiBus::activeWindows(const std::string& service,
                                                                Deadline deadline) {
    const auto windows = childrenOf({service, desktop.path}, deadline);
    if (!windows)
        return std::nullopt;
    std::vector<Question> questions;
    for (const auto& window : *windows)
        questions.push_back(askStates(window, deadline));
    std::vector<AtspiObject> active;
    for (std::size_t i = 0; i < windows->size(); ++i) {
        if (has(states(questions[i]), ATSPI_STATE_ACTIVE))
            active.push_back((*windows)[i]);
    }
    return active;
}

/// An object whose answers are under way.
struct AtspiBus::Visit {
    AtspiObject object;
    Question states;
    Question childCount;
};

std::optional<AtspiDescription> AtspiBus::findFocused(const AtspiObject& window, Deadline deadline) {
    std::optional<AtspiDescription> vague;
    std::deque<AtspiObject> waiting{window};
    std::deque<Visit> visits;
    std::deque<Question> lists; ///< of children
    std::size_t asked = 0;
    while (Clock::now() < deadline) {
        while (!waiting.empty() && visits.size() + lists.size() < mostAtOnce && asked < mostObjects) {
            auto object = std::move(waiting.front());
            waiting.pop_front();
            ++asked;
            auto statesAsked = askStates(object, deadline);
            auto countAsked = askChildCount(object, deadline);
            visits.push_back({std::move(object), std::move(statesAsked), std::move(countAsked)});
        }
        if (visits.empty() && lists.empty())
            break;
        if (visits.empty()) {
            auto parts = children(lists.front());
            lists.pop_front();
            parts.resize(
                std::min(parts.size(), mostObjects - asked - std::min(waiting.size(), mostObjects - asked)));
            waiting.insert(waiting.end(), parts.begin(), parts.end());
            continue;
        }
        const auto visit = std::move(visits.front());
        visits.pop_front();
        const auto stateBits = states(visit.states);
        if (has(stateBits, ATSPI_STATE_FOCUSED)) {
            const auto description = describe(visit.object, deadline);
            // A box around the object that has the focus may say that it is focused, too.
            if (description && has(stateBits, ATSPI_STATE_FOCUSABLE) && !tellsNothing(description->role))
                return description;
            if (!vague)
                vague = description;
        }
        const bool shown = has(stateBits, ATSPI_STATE_SHOWING) || has(stateBits, ATSPI_STATE_VISIBLE);
        // A table makes its cells up when it is asked for them, all of a million if need be.
        if (shown && !has(stateBits, ATSPI_STATE_MANAGES_DESCENDANTS) &&
            canBeListed(childCount(visit.childCount).value_or(0)))
            lists.push_back(askChildren(visit.object, deadline));
    }
    return vague;
}

} // namespace talvera
