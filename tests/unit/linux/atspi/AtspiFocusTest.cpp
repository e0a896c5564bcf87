// SPDX-License-Identifier: MIT
#include "linux/atspi/AtspiFocusMemory.h"
#include "linux/atspi/DescribedElement.h"

#include <atspi/atspi-constants.h>

#include <gtest/gtest.h>

using namespace talvera;

namespace {

const AtspiObject field{":1.5", "/field"};
const AtspiObject button{":1.5", "/button"};
const AtspiObject window{":1.5", "/window"};
const AtspiObject otherWindow{":1.5", "/other"};

TEST(AtspiFocusMemory, unknownApplication_hasNothing) {
    EXPECT_EQ(AtspiFocusMemory().lastFocused(":1.5"), std::nullopt);
}

TEST(AtspiFocusMemory, lastGain_isWhatCounts) {
    AtspiFocusMemory memory;
    memory.focusGained(field);
    memory.focusGained(button);
    memory.focusGained({":1.6", "/elsewhere"});
    EXPECT_EQ(memory.lastFocused(":1.5"), button);
}

TEST(AtspiFocusMemory, heldHotkey_leavesTheFocusAsItWas) {
    AtspiFocusMemory memory;
    memory.windowActivated(window);
    memory.focusGained(field);
    memory.windowDeactivated(window);
    EXPECT_EQ(memory.lastFocused(":1.5"), field);
    memory.windowActivated(window);
    EXPECT_EQ(memory.lastFocused(":1.5"), field);
}

TEST(AtspiFocusMemory, otherWindowOfTheApplication_doesNotInheritTheFocus) {
    AtspiFocusMemory memory;
    memory.windowActivated(window);
    memory.focusGained(field);
    memory.windowDeactivated(window);
    memory.windowActivated(otherWindow);
    EXPECT_EQ(memory.lastFocused(":1.5"), std::nullopt);
}

TEST(AtspiFocusMemory, otherWindowsFocusToldBeforeTheWindowItself_isKept) {
    AtspiFocusMemory memory;
    memory.windowActivated(window);
    memory.focusGained(field);
    memory.windowDeactivated(window);
    memory.focusGained(button);
    memory.windowActivated(otherWindow);
    EXPECT_EQ(memory.lastFocused(":1.5"), button);
}

TEST(AtspiFocusMemory, thousandsOfApplications_leaveTheLatestOnly) {
    AtspiFocusMemory memory;
    for (int i = 0; i < 5000; ++i)
        memory.focusGained({":1." + std::to_string(i), "/field"});
    EXPECT_EQ(memory.lastFocused(":1.0"), std::nullopt);
    EXPECT_TRUE(memory.lastFocused(":1.4999"));
}

AtspiDescription object(std::uint32_t role, std::initializer_list<int> states,
                        std::vector<std::string> interfaces = {}) {
    AtspiDescription description{role, 0, std::move(interfaces)};
    for (const auto state : states)
        description.states |= std::uint64_t(1) << state;
    return description;
}

TEST(DescribedElement, editableField_isATextFieldWhoseValueCanBeSet) {
    const auto attributes = attributesOf(object(ATSPI_ROLE_ENTRY, {ATSPI_STATE_EDITABLE},
                                                {"org.a11y.atspi.Text", "org.a11y.atspi.EditableText"}));
    EXPECT_EQ(attributes.role, "AXTextField");
    EXPECT_TRUE(attributes.editable);
    EXPECT_TRUE(attributes.valueSettable);
    EXPECT_TRUE(attributes.hasText);
}

TEST(DescribedElement, readOnlyState_weighsMoreThanEditable) {
    const auto attributes =
        attributesOf(object(ATSPI_ROLE_TEXT, {ATSPI_STATE_EDITABLE, ATSPI_STATE_READ_ONLY},
                            {"org.a11y.atspi.Text", "org.a11y.atspi.EditableText"}));
    EXPECT_EQ(attributes.role, "AXStaticText");
    EXPECT_FALSE(attributes.editable);
    EXPECT_FALSE(attributes.valueSettable);
    EXPECT_FALSE(attributes.hasText);
}

TEST(DescribedElement, pagesLabelsAndLinksWithText_areNoTextFields) {
    for (const auto role : {ATSPI_ROLE_LABEL, ATSPI_ROLE_DOCUMENT_WEB, ATSPI_ROLE_LINK, ATSPI_ROLE_PARAGRAPH,
                            ATSPI_ROLE_LIST_ITEM, ATSPI_ROLE_HEADING}) {
        const auto attributes = attributesOf(object(role, {}, {"org.a11y.atspi.Text"}));
        EXPECT_FALSE(attributes.hasText) << role;
        EXPECT_FALSE(attributes.role == "AXTextField" || attributes.role == "AXTextArea") << role;
    }
}

TEST(DescribedElement, editableContent_isEditableWhateverItsRole) {
    EXPECT_EQ(attributesOf(object(ATSPI_ROLE_DOCUMENT_WEB, {ATSPI_STATE_EDITABLE})).role, "AXTextArea");
    EXPECT_TRUE(attributesOf(object(ATSPI_ROLE_TABLE_CELL, {ATSPI_STATE_EDITABLE})).editable);
}

TEST(DescribedElement, everyRole_isKnownOrAGroup) {
    for (std::uint32_t role = 0; role < 300; ++role)
        EXPECT_TRUE(attributesOf(object(role, {})).role.startsWith("AX"));
}

} // namespace
