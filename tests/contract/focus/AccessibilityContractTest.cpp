// SPDX-License-Identifier: MIT
// What every accessibility tree promises, the fake one and that of a real session alike.
#include "AccessibilityFixture.h"
#include "FakeAccessibility.h"
#include "FakeWorkspace.h"

using namespace talvera;

namespace {

class WithFakeTree : public testing::Test {
protected:
    test::SimulatedMainActor actor;
    test::FakeWorkspace workspace;
    test::FakeAccessibility accessibility;
    FocusTracker tracker{actor, accessibility, workspace};

    void focusTextField() {
        workspace.runInFront({100, {}, {}});
        accessibility.setTextFieldFocused(true);
    }
    void focusButton() {
        workspace.runInFront({100, {}, {}});
        accessibility.setTextFieldFocused(false);
    }
    void focusNothing() { accessibility.answer = std::monostate{}; }
};

class WithRealTree : public test::AccessibilityFixture {
protected:
    std::optional<test::Peer> peer;

    void focusTextField() { focus("text-view", "AXTextArea editable"); }
    void focusButton() { focus("button", "AXButton"); }
    void focusNothing() {}

private:
    void focus(const QString& widget, const std::string& role) {
        peer.emplace(TALVERA_PEERS "/gtk-widgets.py", QStringList{widget});
        ASSERT_EQ(focusedRoleOnceItIs(role), role);
    }
};

template <typename Tree>
class AccessibilityContract : public Tree {};

using Trees = testing::Types<WithFakeTree, WithRealTree>;
TYPED_TEST_SUITE(AccessibilityContract, Trees);

TYPED_TEST(AccessibilityContract, textFieldInFocus_isAnElementThatTakesText) {
    this->focusTextField();
    EXPECT_TRUE(this->tracker.hasFocusedTextField());
    EXPECT_TRUE(this->tracker.captureFocusSnapshot());
}

TYPED_TEST(AccessibilityContract, buttonInFocus_isAnElementThatTakesNoText) {
    this->focusButton();
    EXPECT_TRUE(
        std::holds_alternative<std::unique_ptr<AccessibilityElement>>(this->accessibility.focusedElement()));
    EXPECT_FALSE(this->tracker.hasFocusedTextField());
    EXPECT_FALSE(this->tracker.captureFocusSnapshot());
}

TYPED_TEST(AccessibilityContract, emptyDesktop_hasNothingInFocus) {
    this->focusNothing();
    EXPECT_TRUE(std::holds_alternative<NoFocusedElement>(this->accessibility.focusedElement()));
    EXPECT_FALSE(this->tracker.hasFocusedTextField());
}

TYPED_TEST(AccessibilityContract, element_keepsToItsAttributes) {
    this->focusTextField();
    auto focused = this->accessibility.focusedElement();
    auto& element = *std::get<std::unique_ptr<AccessibilityElement>>(focused);
    EXPECT_EQ(element.stringAttribute("AXRole"), "AXTextArea");
    EXPECT_EQ(element.stringAttribute("AXUnheardOf"), std::nullopt);
    EXPECT_EQ(element.boolAttribute("AXUnheardOf"), std::nullopt);
    EXPECT_FALSE(element.isAttributeSettable("AXRole"));
    EXPECT_TRUE(element.attributeNames());
}

TYPED_TEST(AccessibilityContract, switchForAssistiveClients_canBeSet) {
    EXPECT_TRUE(this->accessibility.setApplicationAttribute(100, "AXManualAccessibility", true));
}

} // namespace
