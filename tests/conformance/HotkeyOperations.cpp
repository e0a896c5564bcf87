// SPDX-License-Identifier: MIT
#include "FakeEventTap.h"
#include "FakeKeyboardLayout.h"
#include "RecordingConsole.h"
#include "SimulatedMainActor.h"
#include "hotkeys/HotkeyBinding.h"
#include "hotkeys/HotkeyManager.h"
#include "hotkeys/HotkeyRecorder.h"
#include "hotkeys/TranslateToggleHotkey.h"
#include "operations.h"

#include <functional>

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

/// What became of each event: whether it was passed on, and what it called back.
struct Script {
    Answer passed = Answer::array();
    Answer callbacks = Answer::array();

    /// To be called back after the present event.
    std::function<void()> noting(const char* name) {
        return [this, name] { callbacks.push_back({{"after", passed.size() - 1}, {"name", name}}); };
    }

    /// Sends the events of a request; those called "setBinding" go to `setBinding`.
    Answer play(const Request& request, test::SimulatedMainActor& actor, test::FakeKeyboard& keyboard,
                const std::function<void(const Request&)>& setBinding) {
        for (const auto& event : request.objects("events")) {
            if (event.text("type") == QLatin1String("setBinding")) {
                setBinding(event);
                passed.push_back(nullptr);
            } else {
                passed.push_back(keyboard.send(eventFrom(event)) == Verdict::Pass);
            }
            actor.settle();
        }
        return {{"passed", passed}, {"callbacks", callbacks}};
    }
};

Answer hotkeyScript(const Request& request) {
    test::SimulatedMainActor actor;
    test::FakeKeyboard keyboard;
    test::RecordingConsole console;
    HotkeyManager hotkey(actor, keyboard, console);
    Script script;
    hotkey.onPressStart = script.noting("pressStart");
    hotkey.onPressEnd = script.noting("pressEnd");
    hotkey.setBinding(bindingFrom(request));
    hotkey.install();
    return script.play(request, actor, keyboard,
                       [&hotkey](const Request& event) { hotkey.setBinding(bindingFrom(event)); });
}

std::optional<HotkeyBinding> optionalBindingFrom(const Request& request) {
    return request.has("binding") ? std::optional(bindingFrom(request)) : std::nullopt;
}

Answer toggleScript(const Request& request) {
    test::SimulatedMainActor actor;
    test::FakeKeyboard keyboard;
    test::RecordingConsole console;
    TranslateToggleHotkey toggle(actor, keyboard, console);
    Script script;
    toggle.onTrigger = script.noting("trigger");
    toggle.setBinding(optionalBindingFrom(request));
    toggle.install();
    return script.play(request, actor, keyboard,
                       [&toggle](const Request& event) { toggle.setBinding(optionalBindingFrom(event)); });
}

void sendTo(HotkeyRecorder::RecorderView& view, const Request& event) {
    const auto keyCode = [&event] { return VirtualKey(event.integer<std::uint16_t>("keyCode")); };
    const auto flags = [&event] { return event.optionalInteger<std::uint64_t>("flags").value_or(0); };
    const auto type = event.text("type");
    if (type == QLatin1String("click"))
        view.mouseDown();
    else if (type == QLatin1String("hostUpdate"))
        view.hostUpdate(event.truth("isRecording"));
    else if (type == QLatin1String("keyDown"))
        view.keyDown(keyCode(), flags());
    else if (type == QLatin1String("flagsChanged"))
        view.flagsChanged(keyCode(), flags());
    else
        throw BadRequest("unknown value of \"type\"");
}

Answer recorderScript(const Request& request) {
    auto armed = Answer::array();
    auto captured = Answer::array();
    auto beeps = Answer::array();
    HotkeyRecorder::RecorderView view([&] { beeps.push_back(armed.size()); });
    view.onCapture = [&](const HotkeyBinding& binding) {
        captured.push_back(
            {{"after", armed.size()}, {"binding", Answer::parse(binding.encoded().toStdString())}});
    };
    for (const auto& event : request.objects("events")) {
        sendTo(view, event);
        armed.push_back(view.isArmed.get());
    }
    return {{"armed", armed}, {"captured", captured}, {"beeps", beeps}};
}

} // namespace

void addHotkeyOperations(Driver& driver) {
    driver.add("bindingDecode", bindingDecode);
    driver.add("bindingEncode", bindingEncode);
    driver.add("bindingDisplay", bindingDisplay);
    driver.add("hotkeyScript", hotkeyScript);
    driver.add("toggleScript", toggleScript);
    driver.add("recorderScript", recorderScript);
}

} // namespace talvera::conformance
