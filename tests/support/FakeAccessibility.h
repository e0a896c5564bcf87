// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/Accessibility.h"

#include <deque>
#include <functional>
#include <utility>
#include <vector>

namespace talvera::test {

/// What a fake focused element says of itself; what is absent can't be read.
struct FakeElement {
    std::optional<QString> role = {};
    std::optional<bool> editable = {};
    bool valueSettable = false;
    std::optional<QStringList> attributes = QStringList();
};

/// An accessibility tree that is nothing but its focused element, as the test describes it.
class FakeAccessibility final : public Accessibility {
public:
    /// One answer to "what has the focus?"; monostate is nothing.
    using Answer = std::variant<std::monostate, NotAnElement, FakeElement>;

    struct Switch {
        pid_t pid;
        QString name;
        bool value;
        bool operator==(const Switch&) const = default;
    };

    /// The answer to every read for which `nextAnswers` holds none.
    Answer answer = FakeElement{.role = QStringLiteral("AXTextArea")};
    /// Answers to the coming reads.
    std::deque<Answer> nextAnswers;
    /// Whether a switch can be set.
    std::function<bool(const QString& name)> acceptsSwitch = [](const QString&) { return true; };

    /// Called at each read, before the answer: for an application that takes its time.
    std::function<void()> onRead;

    int focusReads = 0;
    std::vector<Switch> switches; ///< all that were tried, in order

    /// The common case: a text field has the focus, or a button has.
    void setTextFieldFocused(bool focused) {
        answer = FakeElement{.role = focused ? QStringLiteral("AXTextArea") : QStringLiteral("AXButton")};
    }

    FocusedElement focusedElement() override {
        ++focusReads;
        if (onRead)
            onRead();
        auto current = answer;
        if (!nextAnswers.empty()) {
            current = std::move(nextAnswers.front());
            nextAnswers.pop_front();
        }
        if (auto* element = std::get_if<FakeElement>(&current))
            return std::make_unique<Element>(std::move(*element));
        if (std::holds_alternative<NotAnElement>(current))
            return NotAnElement{};
        return NoFocusedElement{};
    }

    bool setApplicationAttribute(pid_t pid, const QString& name, bool value) override {
        switches.push_back({pid, name, value});
        return acceptsSwitch(name);
    }

private:
    class Element final : public AccessibilityElement {
    public:
        explicit Element(FakeElement described)
            : m_described(std::move(described)) {}

        std::optional<QString> stringAttribute(const QString& name) override {
            return name == QStringLiteral("AXRole") ? m_described.role : std::nullopt;
        }
        std::optional<bool> boolAttribute(const QString& name) override {
            return name == QStringLiteral("AXEditable") ? m_described.editable : std::nullopt;
        }
        std::optional<QStringList> attributeNames() override { return m_described.attributes; }
        bool isAttributeSettable(const QString& name) override {
            return name == QStringLiteral("AXValue") && m_described.valueSettable;
        }

    private:
        FakeElement m_described;
    };
};

} // namespace talvera::test
