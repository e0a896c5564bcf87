// SPDX-License-Identifier: MIT
#pragma once

#include "linux/atspi/AtspiDescription.h"
#include "linux/atspi/GlibPtr.h"

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace talvera {

/// Questions to the applications on the accessibility bus. Every question has a deadline; who doesn't answer
/// by then, or not in the expected form, has not answered. One thread, which is the one of the connection's
/// signals too; none of them is delivered while a question is under way.
class AtspiBus {
public:
    using Clock = std::chrono::steady_clock;
    using Deadline = Clock::time_point;
    /// Gets the object that a signal came from, and what the signal says.
    using OnSignal = std::function<void(const AtspiObject&, GVariant*)>;

    explicit AtspiBus(GlibPtr<GDBusConnection> connection);
    ~AtspiBus();
    AtspiBus(const AtspiBus&) = delete;
    AtspiBus& operator=(const AtspiBus&) = delete;

    /// Asks every application to announce events named `event`, and hands the announcements on: the signals
    /// `signal` of `interface` whose first argument is `detail`, or all when it is null.
    void follow(const char* event, const char* interface, const char* signal, const char* detail,
                OnSignal onSignal);

    /// The applications, by their names on the bus.
    std::vector<std::string> applications(Deadline deadline);
    /// Nothing for an application that has left.
    std::optional<pid_t> process(const std::string& service, Deadline deadline);

    std::optional<AtspiDescription> describe(const AtspiObject& object, Deadline deadline);
    /// The application's windows that are active by its own word. Nothing when it doesn't answer.
    std::optional<std::vector<AtspiObject>> activeWindows(const std::string& service, Deadline deadline);
    /// The focused object below `window`, of several the one that tells most of itself.
    std::optional<AtspiDescription> findFocused(const AtspiObject& window, Deadline deadline);

private:
    struct Answer;
    using Question = std::shared_ptr<Answer>;
    struct Visit;

    /// Sends a question; `answerType` is the form that its answer must have. Takes `arguments` over.
    Question call(const AtspiObject& object, const char* interface, const char* method, GVariant* arguments,
                  const char* answerType, Deadline deadline);
    Question askStates(const AtspiObject& object, Deadline deadline);
    Question askChildCount(const AtspiObject& object, Deadline deadline);
    Question askChildren(const AtspiObject& object, Deadline deadline);
    /// The answer, or null when there is none. Waits for it until the question's deadline.
    GVariant* await(const Question& question);
    std::uint64_t states(const Question& question);
    std::optional<std::size_t> childCount(const Question& question);
    std::vector<AtspiObject> children(const Question& question);
    /// None of an object with too many. Nothing when it doesn't answer.
    std::optional<std::vector<AtspiObject>> childrenOf(const AtspiObject& object, Deadline deadline);
    bool holdsField(const AtspiObject& object, Deadline deadline);

    GlibPtr<GDBusConnection> m_connection;
    GlibPtr<GMainContext> m_answers; ///< apart from the thread's, so that waiting delivers nothing else
    int m_underWay = 0;
    std::map<unsigned, std::unique_ptr<OnSignal>> m_subscriptions; ///< by GLib's numbers
};

} // namespace talvera
