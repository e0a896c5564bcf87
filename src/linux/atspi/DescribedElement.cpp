// SPDX-License-Identifier: MIT
#include "linux/atspi/DescribedElement.h"

#include "linux/atspi/AtspiDescription.h"

#include <atspi/atspi-constants.h>

namespace talvera {

namespace {

const QString textField = QStringLiteral("AXTextField");
const QString textArea = QStringLiteral("AXTextArea");
const QString staticText = QStringLiteral("AXStaticText");

bool isEditable(const AtspiDescription& object) {
    return object.has(ATSPI_STATE_EDITABLE) && !object.has(ATSPI_STATE_READ_ONLY);
}

QString roleOf(const AtspiDescription& object) {
    switch (object.role) {
    case ATSPI_ROLE_PASSWORD_TEXT:
        return textField;
    case ATSPI_ROLE_SPIN_BUTTON: // numbers are written into it, which not every toolkit says
        return object.has(ATSPI_STATE_READ_ONLY) ? staticText : textField;
    case ATSPI_ROLE_TERMINAL: // never says that it is editable
        return textArea;
    case ATSPI_ROLE_TEXT:
    case ATSPI_ROLE_ENTRY:
    case ATSPI_ROLE_EDITBAR:
    case ATSPI_ROLE_AUTOCOMPLETE:
    case ATSPI_ROLE_DATE_EDITOR:
        // What can only be read would lose what is typed into it.
        if (!isEditable(object))
            return staticText;
        return object.has(ATSPI_STATE_MULTI_LINE) ? textArea : textField;
    case ATSPI_ROLE_COMBO_BOX:
        return isEditable(object) ? QStringLiteral("AXComboBox") : QStringLiteral("AXPopUpButton");
    case ATSPI_ROLE_PARAGRAPH:
    case ATSPI_ROLE_DOCUMENT_FRAME:
    case ATSPI_ROLE_DOCUMENT_TEXT:
    case ATSPI_ROLE_DOCUMENT_WEB:
    case ATSPI_ROLE_DOCUMENT_EMAIL:
        return isEditable(object) ? textArea : QStringLiteral("AXWebArea");
    case ATSPI_ROLE_LABEL:
    case ATSPI_ROLE_STATIC:
        return staticText;
    case ATSPI_ROLE_PUSH_BUTTON:
        return QStringLiteral("AXButton");
    case ATSPI_ROLE_CHECK_BOX:
        return QStringLiteral("AXCheckBox");
    case ATSPI_ROLE_RADIO_BUTTON:
        return QStringLiteral("AXRadioButton");
    case ATSPI_ROLE_SLIDER:
        return QStringLiteral("AXSlider");
    case ATSPI_ROLE_LINK:
        return QStringLiteral("AXLink");
    case ATSPI_ROLE_MENU_ITEM:
        return QStringLiteral("AXMenuItem");
    default:
        return QStringLiteral("AXGroup");
    }
}

} // namespace

DescribedElement::Attributes attributesOf(const AtspiDescription& object) {
    DescribedElement::Attributes attributes;
    attributes.role = roleOf(object);
    attributes.editable = isEditable(object);
    attributes.valueSettable = attributes.editable && object.offers("EditableText");
    // Many toolkits give the text interface to labels, links and whole pages; only where text is written does
    // it mean a caret.
    attributes.hasText = object.offers("Text") && (attributes.editable || attributes.role == textArea);
    return attributes;
}

DescribedElement::Attributes attributesOfSilentWindow() {
    return {.role = textArea};
}

bool tellsNothing(std::uint32_t role) {
    switch (role) {
    case ATSPI_ROLE_INVALID:
    case ATSPI_ROLE_UNKNOWN:
    case ATSPI_ROLE_EXTENDED:
    case ATSPI_ROLE_APPLICATION:
    case ATSPI_ROLE_FRAME:
    case ATSPI_ROLE_WINDOW:
    case ATSPI_ROLE_INTERNAL_FRAME:
    case ATSPI_ROLE_DIALOG:
    case ATSPI_ROLE_FILLER:
    case ATSPI_ROLE_PANEL:
    case ATSPI_ROLE_ROOT_PANE:
    case ATSPI_ROLE_LAYERED_PANE:
    case ATSPI_ROLE_GLASS_PANE:
    case ATSPI_ROLE_SCROLL_PANE:
    case ATSPI_ROLE_SPLIT_PANE:
    case ATSPI_ROLE_VIEWPORT:
    case ATSPI_ROLE_CANVAS:
    case ATSPI_ROLE_DRAWING_AREA:
    case ATSPI_ROLE_EMBEDDED:
    case ATSPI_ROLE_HTML_CONTAINER:
    case ATSPI_ROLE_REDUNDANT_OBJECT:
        return true;
    default:
        return false;
    }
}

std::optional<QString> DescribedElement::stringAttribute(const QString& name) {
    return name == QStringLiteral("AXRole") ? std::optional(m_attributes.role) : std::nullopt;
}

std::optional<bool> DescribedElement::boolAttribute(const QString& name) {
    return name == QStringLiteral("AXEditable") ? std::optional(m_attributes.editable) : std::nullopt;
}

std::optional<QStringList> DescribedElement::attributeNames() {
    QStringList names{QStringLiteral("AXRole"), QStringLiteral("AXEditable")};
    if (m_attributes.hasText)
        names << QStringLiteral("AXValue") << QStringLiteral("AXSelectedTextRange")
              << QStringLiteral("AXNumberOfCharacters");
    return names;
}

bool DescribedElement::isAttributeSettable(const QString& name) {
    return name == QStringLiteral("AXValue") && m_attributes.valueSettable;
}

} // namespace talvera
