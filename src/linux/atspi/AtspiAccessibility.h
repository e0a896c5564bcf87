// SPDX-License-Identifier: MIT
#pragma once

#include "linux/atspi/AtspiDescription.h"
#include "platform/desktop/Accessibility.h"

#include <chrono>
#include <memory>
#include <optional>
#include <string>

namespace talvera {

class AtspiListener;
class Workspace;

/// The accessibility tree of the session, over the accessibility bus.
///
/// Which application is in front is the workspace's word; the bus only says what has the focus in it. An
/// application that says nothing counts as able to take text, one that answers is believed. The questions run
/// on a thread of their own, so that a hung application costs no more than a bounded moment.
class AtspiAccessibility final : public Accessibility {
public:
    /// How long an application may take to answer.
    static constexpr std::chrono::milliseconds usualPatience{200};

    /// The workspace outlives this.
    explicit AtspiAccessibility(Workspace& workspace, std::chrono::milliseconds patience = usualPatience);
    /// For the session whose bus has this address.
    AtspiAccessibility(Workspace& workspace, const std::string& sessionBus,
                       std::chrono::milliseconds patience = usualPatience);
    ~AtspiAccessibility() override;

    /// Tells all applications of the session that an assistive client is there. Many look only when they
    /// start, so this is done at our own launch, and not taken back at our end: those that run have it
    /// anyway.
    void enableForSession();

    FocusedElement focusedElement() override;
    bool setApplicationAttribute(pid_t pid, const QString& name, bool value) override;

private:
    std::optional<AtspiDescription> focusedObject(pid_t pid);

    Workspace& m_workspace;
    std::chrono::milliseconds m_patience;
    std::unique_ptr<AtspiListener> m_listener;
};

} // namespace talvera
