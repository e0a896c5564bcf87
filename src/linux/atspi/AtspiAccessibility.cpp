// SPDX-License-Identifier: MIT
#include "linux/atspi/AtspiAccessibility.h"

#include "linux/atspi/AtspiListener.h"
#include "linux/atspi/DescribedElement.h"
#include "linux/atspi/OwnFocusedElement.h"
#include "platform/desktop/Workspace.h"

#include <functional>
#include <future>

#include <unistd.h>

namespace talvera {

namespace {

/// Beyond the patience with applications, for the way to the thread and back.
constexpr std::chrono::milliseconds threadPatience{50};

template <typename Answer>
using OnAnswer = std::function<void(Answer)>;

/// Puts `question` on the listener's thread and waits for what it calls its argument with; nothing when that
/// does not come in time. The question may still be under way then.
template <typename Answer>
std::optional<Answer> askInTime(AtspiListener& listener, std::chrono::milliseconds patience,
                                std::function<void(AtspiListener&, OnAnswer<Answer>)> question) {
    const auto promise = std::make_shared<std::promise<Answer>>();
    auto answer = promise->get_future();
    listener.post([&listener, promise, question = std::move(question)] {
        question(listener, [promise](Answer value) { promise->set_value(std::move(value)); });
    });
    if (answer.wait_for(patience + threadPatience) != std::future_status::ready)
        return std::nullopt;
    return answer.get();
}

} // namespace

AtspiAccessibility::AtspiAccessibility(Workspace& workspace, std::chrono::milliseconds patience)
    : AtspiAccessibility(workspace, AtspiListener::sessionBusAddress(), patience) {}

AtspiAccessibility::AtspiAccessibility(Workspace& workspace, const std::string& sessionBus,
                                       std::chrono::milliseconds patience)
    : m_workspace(workspace)
    , m_patience(patience)
    , m_listener(std::make_unique<AtspiListener>(sessionBus)) {}

AtspiAccessibility::~AtspiAccessibility() = default;

void AtspiAccessibility::enableForSession() {
    m_listener->post([&listener = *m_listener] { listener.setEnabled(true, [](bool) {}); });
}

FocusedElement AtspiAccessibility::focusedElement() {
    const auto frontmost = m_workspace.frontmostApplication();
    if (!frontmost)
        return NoFocusedElement{};
    if (frontmost->pid == ::getpid())
        return ownFocusedElement();
    const auto object = focusedObject(frontmost->pid);
    const bool silent = !object || tellsNothing(object->role);
    return std::make_unique<DescribedElement>(silent ? attributesOfSilentWindow() : attributesOf(*object));
}

std::optional<AtspiDescription> AtspiAccessibility::focusedObject(pid_t pid) {
    if (pid <= 0)
        return std::nullopt; // on another machine
    using Object = std::optional<AtspiDescription>;
    const auto deadline = AtspiBus::Clock::now() + m_patience;
    const auto question = [pid, deadline](AtspiListener& listener, const OnAnswer<Object>& answer) {
        answer(listener.focused(pid, deadline));
    };
    return askInTime<Object>(*m_listener, m_patience, question).value_or(std::nullopt);
}

bool AtspiAccessibility::setApplicationAttribute(pid_t, const QString& name, bool value) {
    // The switch is the session's and not one application's. The other one, "AXEnhancedUserInterface", would
    // be the announcement of a screen reader: desktops start theirs at that word, and it begins to speak.
    if (name != QStringLiteral("AXManualAccessibility"))
        return false;
    const auto question = [value](AtspiListener& listener, const OnAnswer<bool>& answer) {
        listener.setEnabled(value, answer);
    };
    return askInTime<bool>(*m_listener, m_patience, question).value_or(false);
}

} // namespace talvera
