// SPDX-License-Identifier: MIT
#include "linux/wayland/gnome/GnomePasteboard.h"

#include <chrono>
#include <thread>
#include <utility>

namespace talvera {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds readingPatience{250};
constexpr std::chrono::milliseconds poll{5};

} // namespace

GnomePasteboard::GnomePasteboard(std::unique_ptr<Pasteboard> clipboard)
    : m_clipboard(std::move(clipboard)) {}

bool GnomePasteboard::setString(const QString& text) {
    if (!m_clipboard->setString(text))
        return false;
    const auto start = Clock::now();
    for (auto now = state(); now.isHeld && now.requests == 0 && Clock::now() - start < readingPatience;
         now = state())
        std::this_thread::sleep_for(poll);
    return true;
}

} // namespace talvera
