// SPDX-License-Identifier: MIT
#pragma once

#include "Driver.h"
#include "SimulatedWorld.h"

#include <exception>
#include <map>
#include <optional>
#include <set>

namespace talvera::conformance {

/// A stretch of the agent's life on a machine that the request describes, with what the user does when.
class Scenario {
public:
    explicit Scenario(const Request& request);

    /// Lives through it and tells what could be seen. To be called once.
    Answer run();

private:
    void schedule(const Request& entry);
    void perform(const Request& entry);
    void change(const Request& fields);
    void changeApplications(const Request& fields);
    void changeActivation(const QString& activation);
    void changeRecorder(const Request& recorder);
    void changeRecognitions(const Request& fields);
    void changeOnboarding(const Request& flags);
    Answer effects() const;
    Answer final();

    const Request m_request;
    std::exception_ptr m_failure; ///< of the first entry that could not be performed
    bool m_isOver = false;
    std::map<pid_t, RunningApplication> m_known; ///< every application that was ever described
    std::set<pid_t> m_running{100};
    std::set<pid_t> m_started{100};
    test::SimulatedWorld m_world; // goes first: it lets what is under way come to its end
};

} // namespace talvera::conformance
