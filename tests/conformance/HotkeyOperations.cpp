// SPDX-License-Identifier: MIT
#include "FakeEventTap.h"
#include "FakeKeyboardLayout.h"
#include "RecordingConsole.h"
#include "SimulatedMainActor.h"
#include "hotkeys/HotkeyBinding.h"
#include "hotkeys/HotkeyManager.h"
#include "operations.h"

namespace talvera::conformance {

namespace {

HotkeyBinding bindingFrom(const Request& request) {
    try {
        return HotkeyBinding::decoded(QByteArray::fromStdString(request.object("binding").json().dump()));
    } catch (const HotkeyBinding::DecodingError& error) {
        throw BadRequest(std::string("\"binding\": ") + error.what());
    }
}

Answer bindingDecode(const Request& request) {
    try {
        const auto binding = HotkeyBinding::decoded(request.text("json").toUtf8());
        return {{"binding", Answer::parse(binding.encoded().toStdString())}};
    } catch (const HotkeyBinding::DecodingError& error) {
        return {{"failure", error.what()}};
    }
}

Answer bindingEncode(const Request& request) {
    return {{"json", bindingFrom(request).encoded().toStdString()}};
}

Answer bindingDisplay(const Request& request) {
    test::FakeKeyboardLayout layout;
    if (request.has("layout")) {
        const auto characters = request.object("layout");
        for (const auto& [key, character] : characters.json().items()) {
            bool isNumber = false;
            const auto keyCode = QString::fromStdString(key).toUShort(&isNumber);
            if (!isNumber)
                throw BadRequest("\"layout\" must have key codes as its names");
            if (!character.is_null())
                layout.characters[VirtualKey(keyCode)] = toText(character, key);
        }
    }
    return {{"text", bindingFrom(request).displayString(layout).toStdString()}};
}

std::optional<KeyEventType> eventTypeFrom(const QString& name) {
    if (name == QLatin1String("keyDown"))
        return KeyEventType::KeyDown;
    if (name == QLatin1String("keyUp"))
        return KeyEventType::KeyUp;
    if (name == QLatin1String("flagsChanged"))
        return KeyEventType::FlagsChanged;
    if (name == QLatin1String("tapDisabled"))
        return KeyEventType::TapDisabledByTimeout;
    return std::nullopt;
}

KeyEvent eventFrom(const Request& request) {
    KeyEvent event{.type = request.named("type", eventTypeFrom)};
    if (event.type == KeyEventType::TapDisabledByTimeout)
        return event;
    event.keyCode = VirtualKey(request.integer<std::uint16_t>("keyCode"));
    event.flags = request.optionalInteger<std::uint64_t>("flags").value_or(0);
    event.autorepeat = request.has("autorepeat") && request.truth("autorepeat");
    return event;
}

Answer hotkeyScript(const Request& request) {
    test::SimulatedMainActor actor;
    test::FakeKeyboard keyboard;
    test::RecordingConsole console;
    HotkeyManager hotkey(actor, keyboard, console);
    hotkey.setBinding(bindingFrom(request));
    hotkey.install();

    auto passed = Answer::array();
    auto callbacks = Answer::array();
    const auto note = [&](const char* name) {
        callbacks.push_back({{"after", passed.size() - 1}, {"name", name}});
    };
    hotkey.onPressStart = [&note] { note("pressStart"); };
    hotkey.onPressEnd = [&note] { note("pressEnd"); };
    for (const auto& event : request.objects("events")) {
        if (event.text("type") == QLatin1String("setBinding")) {
            hotkey.setBinding(bindingFrom(event));
            passed.push_back(nullptr);
        } else {
            passed.push_back(keyboard.send(eventFrom(event)) == Verdict::Pass);
        }
        actor.settle();
    }
    return {{"passed", passed}, {"callbacks", callbacks}};
}

} // namespace

void addHotkeyOperations(Driver& driver) {
    driver.add("bindingDecode", bindingDecode);
    driver.add("bindingEncode", bindingEncode);
    driver.add("bindingDisplay", bindingDisplay);
    driver.add("hotkeyScript", hotkeyScript);
}

} // namespace talvera::conformance
