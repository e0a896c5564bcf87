// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/Workspace.h"

#include <functional>
#include <map>
#include <vector>

namespace talvera::test {

/// A session whose applications the test starts, quits and brings to the front.
class FakeWorkspace final : public Workspace {
public:
    /// What activate() does with a process that runs.
    enum class Activation {
        Works,   ///< brings it to the front
        Refused, ///< answers false
        NoFocus, ///< answers true, but the front application stays
    };

    Activation activation = Activation::Works;
    std::optional<QString> ownIdentifier = QStringLiteral("talvera");

    /// Every process that activate() was called for, in order.
    std::vector<pid_t> activations;
    /// Called after each activate(), with its process.
    std::function<void(pid_t)> onActivate;
    /// Called after each look at the front application.
    std::function<void()> onLookAtFront;
    /// Called after each change of what is in front.
    std::function<void()> onFrontmost;
    int ownBundleIDReads = 0;

    /// A locked screen covers everything: nothing is in front, whatever is behind it.
    void setCovered(bool covered) {
        m_isCovered = covered;
        tell();
    }
    bool isCovered() const { return m_isCovered; }
    /// Within activate().
    bool isActivating() const { return m_isActivating; }
    std::optional<pid_t> frontmost() const { return m_frontmost; }

    /// The same applications, with the same one in front.
    void become(const FakeWorkspace& other) {
        m_running = other.m_running;
        m_frontmost = other.m_frontmost;
        tell();
    }

    /// Starts an application, or replaces what is known of it.
    void run(const RunningApplication& application) { m_running[application.pid] = application; }
    void quit(pid_t pid) {
        m_running.erase(pid);
        if (m_frontmost == pid)
            setFrontmost(std::nullopt);
    }
    /// Brings a running application to the front, or none.
    void setFrontmost(std::optional<pid_t> pid) {
        m_frontmost = pid;
        tell();
    }
    /// Starts an application and brings it to the front.
    void runInFront(const RunningApplication& application) {
        run(application);
        setFrontmost(application.pid);
    }

    std::optional<RunningApplication> frontmostApplication() override {
        const auto frontmost = m_frontmost && !m_isCovered ? runningApplication(*m_frontmost) : std::nullopt;
        if (onLookAtFront)
            onLookAtFront();
        return frontmost;
    }

    std::optional<RunningApplication> runningApplication(pid_t pid) override {
        const auto found = m_running.find(pid);
        return found == m_running.end() ? std::nullopt : std::optional(found->second);
    }

    bool activate(pid_t pid) override {
        activations.push_back(pid);
        const bool granted = activation != Activation::Refused && m_running.contains(pid);
        m_isActivating = true;
        if (granted && activation == Activation::Works)
            setFrontmost(pid);
        if (onActivate)
            onActivate(pid);
        m_isActivating = false;
        return granted;
    }

    std::optional<QString> ownBundleID() override {
        ++ownBundleIDReads;
        return ownIdentifier;
    }

private:
    void tell() const {
        if (onFrontmost)
            onFrontmost();
    }

    bool m_isCovered = false;
    bool m_isActivating = false;
    std::map<pid_t, RunningApplication> m_running;
    std::optional<pid_t> m_frontmost;
};

} // namespace talvera::test
