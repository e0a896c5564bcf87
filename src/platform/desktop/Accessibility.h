// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/SessionLack.h"

#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <variant>
#include <vector>

#include <sys/types.h>

namespace talvera {

/// One object of an application's accessibility tree, by the attribute names that our logic knows ("AXRole",
/// "AXEditable", "AXValue" ...). Every read may fail, and then gives nothing.
class AccessibilityElement {
public:
    virtual ~AccessibilityElement() = default;

    virtual std::optional<QString> stringAttribute(const QString& name) = 0;
    virtual std::optional<bool> boolAttribute(const QString& name) = 0;
    virtual std::optional<QStringList> attributeNames() = 0;
    virtual bool isAttributeSettable(const QString& name) = 0;
};

/// The answer to "what has the keyboard focus?": nothing, something that is no element, or an element.
struct NoFocusedElement {};
struct NotAnElement {};
using FocusedElement = std::variant<NoFocusedElement, NotAnElement, std::unique_ptr<AccessibilityElement>>;

/// The accessibility tree of the session, and whether we may use what we need of the session at all.
/// Main thread only. A hung application costs at most a bounded moment.
class Accessibility {
public:
    virtual ~Accessibility() = default;

    /// This session lets us watch keys, post keys and see the active window.
    virtual bool isProcessTrusted() = 0;

    /// What it lacks for that.
    virtual std::vector<SessionLack> sessionLacks() = 0;

    /// The key-watching part of the above alone.
    virtual bool isInputMonitoringGranted() = 0;

    virtual FocusedElement focusedElement() = 0;

    /// Sets a switch of an application ("AXManualAccessibility", "AXEnhancedUserInterface"); true on success.
    virtual bool setApplicationAttribute(pid_t pid, const QString& name, bool value) = 0;
};

} // namespace talvera
