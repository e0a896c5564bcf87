// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <variant>

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

/// The accessibility tree of the session. Main thread only. A hung application costs at most a bounded
/// moment.
class Accessibility {
public:
    virtual ~Accessibility() = default;

    virtual FocusedElement focusedElement() = 0;

    /// Sets a switch of an application ("AXManualAccessibility", "AXEnhancedUserInterface"); true on success.
    virtual bool setApplicationAttribute(pid_t pid, const QString& name, bool value) = 0;
};

} // namespace talvera
