// SPDX-License-Identifier: MIT
#include "delivery/FocusTracker.h"

#include "concurrency/MainActor.h"
#include "platform/desktop/Accessibility.h"
#include "platform/desktop/Workspace.h"

#include <algorithm>
#include <array>

namespace talvera {

namespace {

/// What an application gets to build its accessibility tree after it has been primed.
constexpr Duration primingWait = seconds(0.05);

bool isTextRole(const std::optional<QString>& role) {
    static const std::array textRoles{QStringLiteral("AXTextField"), QStringLiteral("AXTextArea"),
                                      QStringLiteral("AXComboBox"), QStringLiteral("AXSearchField")};
    return role && std::find(textRoles.begin(), textRoles.end(), *role) != textRoles.end();
}

bool canTakeText(AccessibilityElement& element) {
    if (isTextRole(element.stringAttribute(QStringLiteral("AXRole"))))
        return true;
    if (element.boolAttribute(QStringLiteral("AXEditable")).value_or(false) ||
        element.isAttributeSettable(QStringLiteral("AXValue")))
        return true;
    // Neither role nor editability, but it advertises a selection or a length: that is text.
    const auto attributes = element.attributeNames().value_or(QStringList());
    return attributes.contains(QStringLiteral("AXSelectedTextRange")) ||
           attributes.contains(QStringLiteral("AXNumberOfCharacters"));
}

} // namespace

FocusTracker::FocusTracker(MainActor& actor, Accessibility& accessibility, Workspace& workspace)
    : m_actor(actor)
    , m_accessibility(accessibility)
    , m_workspace(workspace) {}

bool FocusTracker::hasFocusedTextField() {
    auto focused = m_accessibility.focusedElement();
    if (std::holds_alternative<NoFocusedElement>(focused)) {
        primeAccessibility();
        m_actor.blockFor(primingWait);
        focused = m_accessibility.focusedElement();
    }
    const auto* element = std::get_if<std::unique_ptr<AccessibilityElement>>(&focused);
    return element && *element && canTakeText(**element);
}

void FocusTracker::primeAccessibility() {
    const auto frontmost = m_workspace.frontmostApplication();
    if (!frontmost || m_primedPIDs.contains(frontmost->pid))
        return;
    const bool manual = m_accessibility.setApplicationAttribute(
        frontmost->pid, QStringLiteral("AXManualAccessibility"), true);
    const bool enhanced = m_accessibility.setApplicationAttribute(
        frontmost->pid, QStringLiteral("AXEnhancedUserInterface"), true);
    if (manual || enhanced)
        m_primedPIDs.insert(frontmost->pid);
}

std::optional<FocusSnapshot> FocusTracker::captureFocusSnapshot() {
    const auto frontmost = m_workspace.frontmostApplication();
    if (!frontmost || isOwnProgram(frontmost->bundleID) || !hasFocusedTextField())
        return std::nullopt;
    return FocusSnapshot{frontmost->pid, frontmost->bundleID, frontmost->localizedName};
}

bool FocusTracker::isOwnProgram(const std::optional<QString>& bundleID) {
    if (!m_ownBundleID)
        m_ownBundleID = m_workspace.ownBundleID();
    return *m_ownBundleID && bundleID && *bundleID == **m_ownBundleID;
}

FocusMatch FocusTracker::matchFocus(const std::optional<FocusSnapshot>& snapshot) {
    if (!snapshot) {
        if (hasFocusedTextField())
            return focus_match::NoSnapshotButHaveTextField{};
        return focus_match::NoSnapshotNoTextField{};
    }
    // The process alone is what counts: an application that was quit and started again is another one.
    const auto frontmost = m_workspace.frontmostApplication();
    if (frontmost && frontmost->pid == snapshot->pid)
        return focus_match::Same{};
    if (!m_workspace.runningApplication(snapshot->pid))
        return focus_match::OriginalGone{};
    return focus_match::DifferentButReactivatable{*snapshot};
}

} // namespace talvera
