// SPDX-License-Identifier: MIT
#include "TypingTools.h"

#include "linux/x11/server/X11Server.h"
#include "linux/x11/typing/X11Keyboard.h"
#include "text/typewriterChunks.h"

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <memory>
#include <stdexcept>
#include <thread>
#include <unistd.h>

namespace talvera::test {

namespace {

PostResult type(KeyEventPoster& poster, const QString& text, const TypingTargetPtr& target,
                const std::function<void(qsizetype)>& beforeChunk) {
    using std::chrono::milliseconds;
    const QStringList chunks = typewriterChunks(text);
    const auto session = poster.beginTyping(chunks, target);
    for (qsizetype index = 0; index < chunks.size(); ++index) {
        if (beforeChunk) {
            beforeChunk(index);
        }
        const auto result = session->post(index, KeyPhase::Down);
        if (result == PostResult::TargetLost || result == PostResult::CutOff) {
            return result;
        }
        std::this_thread::sleep_for(milliseconds(2));
        session->post(index, KeyPhase::Up);
        std::this_thread::sleep_for(milliseconds(25));
    }
    return PostResult::Posted;
}

} // namespace

PostResult typeText(KeyEventPoster& poster, const QString& text,
                    const std::function<void(qsizetype)>& beforeChunk) {
    return type(poster, text, poster.focusedTarget(), beforeChunk);
}

PostResult typeAnywhere(KeyEventPoster& poster, const QString& text,
                        const std::function<void(qsizetype)>& beforeChunk) {
    return type(poster, text, nullptr, beforeChunk);
}

PostResult pasteText(KeyEventPoster& poster, Pasteboard& pasteboard, const QString& text) {
    pasteboard.setString(text);
    const auto result = poster.postPaste(KeyPhase::Down, poster.focusedTarget());
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
    poster.postPaste(KeyPhase::Up, nullptr);
    return result;
}

std::string outputOf(const std::string& command) {
    const auto close = [](std::FILE* stream) { ::pclose(stream); };
    const std::unique_ptr<std::FILE, decltype(close)> stream(::popen(command.c_str(), "r"), close);
    std::string output;
    char buffer[4096];
    ssize_t count = 0;
    // Newer versions of Qt handle the end of every child, which interrupts what waits.
    while (stream && ((count = ::read(::fileno(stream.get()), buffer, sizeof buffer)) > 0 ||
                      (count < 0 && errno == EINTR))) {
        if (count > 0) {
            output.append(buffer, static_cast<std::size_t>(count));
        }
    }
    return output;
}

void setLayout(const std::string& layout) {
    outputOf("setxkbmap " + layout);
}

std::string keymap() {
    std::string map = outputOf("xkbcomp \"$DISPLAY\" - 2>/dev/null");
    if (map.empty()) {
        throw std::runtime_error("xkbcomp tells nothing");
    }
    return map;
}

std::string keyboardState() {
    const auto connection = X11Server().connect();
    const auto keyboard = X11Keyboard::open(*connection);
    if (!keyboard) {
        throw std::runtime_error("no keyboard");
    }
    const X11KeyboardState state = keyboard->state();
    std::string told;
    for (std::size_t key = 0; key < state.downKeys.size(); ++key) {
        told += state.downKeys[key] ? " " + std::to_string(key) : "";
    }
    told = told.empty() ? "" : "keys" + told + " ";
    told += state.baseModifiers != 0 ? "held " + std::to_string(state.baseModifiers) + " " : "";
    told += state.latchedModifiers != 0 ? "latched " + std::to_string(state.latchedModifiers) + " " : "";
    told += state.lockedModifiers != 0 ? "locked " + std::to_string(state.lockedModifiers) + " " : "";
    return told;
}

} // namespace talvera::test
