// SPDX-License-Identifier: MIT
#include "linux/lonekeys/helper/KeyTeller.h"

#include <algorithm>
#include <utility>

#include <unistd.h>

namespace talvera {

namespace {

bool isHeldOnAny(const std::vector<WatchedKeyboard>& keyboards, std::uint16_t code) {
    return std::ranges::any_of(
        keyboards, [code](const WatchedKeyboard& keyboard) { return keyboard.held().contains(code); });
}

std::string line(const char* word, std::size_t number) {
    return word + std::to_string(number) + '\n';
}

} // namespace

bool KeyTeller::tell(const std::vector<WatchedKeyboard>& keyboards, const std::vector<KeyboardNews>& news) {
    using Kind = KeyboardNews::Kind;
    bool isRead = true;
    for (const auto& [kind, code] : news) {
        if (kind == Kind::Down && m_held.insert(code).second) {
            m_toldOther = false;
            isRead = isRead && write(line("down ", code));
        } else if (kind == Kind::Up && !isHeldOnAny(keyboards, code) && m_held.erase(code) > 0) {
            isRead = isRead && write(line("up ", code));
        } else if (kind == Kind::Other && isHeld() && !std::exchange(m_toldOther, true)) {
            isRead = isRead && write("other\n");
        }
    }
    return isRead;
}

bool KeyTeller::tellCount(std::size_t keyboards) {
    return std::exchange(m_toldCount, keyboards) == keyboards || write(line("keyboards ", keyboards));
}

bool KeyTeller::tellRest(const std::vector<WatchedKeyboard>& keyboards) {
    bool isRead = true;
    for (const auto code : KeyCodes(m_held)) {
        if (!isHeldOnAny(keyboards, code)) {
            m_held.erase(code);
            isRead = isRead && write(line("up ", code));
        }
    }
    return isRead;
}

bool KeyTeller::write(const std::string& line) const {
    return ::write(m_output, line.data(), line.size()) == static_cast<ssize_t>(line.size());
}

} // namespace talvera
