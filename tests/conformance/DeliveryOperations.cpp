// SPDX-License-Identifier: MIT
#include "FakeAccessibility.h"
#include "FakeWorkspace.h"
#include "SimulatedMainActor.h"
#include "delivery/FocusTracker.h"
#include "delivery/InsertionMode.h"
#include "delivery/TextInserter.h"
#include "operations.h"
#include "text/typewriterChunks.h"

namespace talvera::conformance {

namespace {

Answer resolveMode(const Request& request) {
    const auto mode =
        TextInserter::resolveMode(request.named("insertionMode", &fromRawValue<InsertionMode>),
                                  request.number("durationSeconds"), request.number("thresholdSeconds"));
    return {{"mode", mode == ResolvedMode::Typewriter ? "typewriter" : "paste"}};
}

Answer chunksOf(const Request& request) {
    auto chunks = Answer::array();
    for (const auto& chunk : typewriterChunks(request.text("text")))
        chunks.push_back(chunk.toStdString());
    return {{"chunks", chunks}};
}

test::FakeAccessibility::Answer focusedElement(const nlohmann::json& read) {
    if (read.is_null())
        return std::monostate{};
    if (read == "notAnElement")
        return NotAnElement{};
    const Request element(read);
    test::FakeElement described;
    described.role = element.optionalText("role");
    described.editable = element.has("editable") ? std::optional(element.truth("editable")) : std::nullopt;
    described.valueSettable = element.has("valueSettable") && element.truth("valueSettable");
    described.attributes =
        element.has("attributes") ? std::optional(element.texts("attributes")) : std::nullopt;
    return described;
}

Answer focusedTextField(const Request& request) {
    test::SimulatedMainActor actor;
    test::FakeWorkspace workspace;
    workspace.runInFront({100, {}, {}});
    test::FakeAccessibility accessibility;
    accessibility.answer = std::monostate{};
    for (const auto& read : request.array("reads"))
        accessibility.nextAnswers.push_back(focusedElement(read));
    FocusTracker tracker(actor, accessibility, workspace);
    const bool answer = tracker.hasFocusedTextField();
    return {{"answer", answer}, {"primed", !accessibility.switches.empty()}};
}

} // namespace

void addDeliveryOperations(Driver& driver) {
    driver.add("resolveMode", resolveMode);
    driver.add("typewriterChunks", chunksOf);
    driver.add("focusedTextField", focusedTextField);
}

} // namespace talvera::conformance
