// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/Accessibility.h"

namespace talvera {

struct AtspiDescription;

/// An element whose attributes are all known beforehand, so that reading them costs nothing.
class DescribedElement final : public AccessibilityElement {
public:
    struct Attributes {
        QString role;
        bool editable = false;
        bool valueSettable = false;
        bool hasText = false; ///< a caret that moves in a text of so many characters
    };

    explicit DescribedElement(Attributes attributes)
        : m_attributes(std::move(attributes)) {}

    std::optional<QString> stringAttribute(const QString& name) override;
    std::optional<bool> boolAttribute(const QString& name) override;
    std::optional<QStringList> attributeNames() override;
    bool isAttributeSettable(const QString& name) override;

private:
    Attributes m_attributes;
};

/// What an object of the accessibility bus is in the words that our logic knows.
DescribedElement::Attributes attributesOf(const AtspiDescription& object);

/// The focus of a window that tells of none. Terminals, browsers, remote desktops and games are silent, and
/// just there people write: such a window counts as able to take text.
DescribedElement::Attributes attributesOfSilentWindow();

/// Whether the role is one that toolkits give to what they know nothing of: a box, a canvas, the window. Such
/// an object says no more than silence does.
bool tellsNothing(std::uint32_t role);

} // namespace talvera
