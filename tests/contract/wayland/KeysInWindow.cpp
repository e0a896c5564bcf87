// SPDX-License-Identifier: MIT
#include "KeysInWindow.h"

#include <QCoreApplication>

#include <stdexcept>

namespace talvera::test {

bool says(Peer& program, const QString& line) {
    for (auto said = program.readLine(); !said.isEmpty(); said = program.readLine()) {
        if (said == line)
            return true;
    }
    return false;
}

TapOwner::TapOwner(EventTapFactory& taps)
    : tap(taps.create([this](const KeyEvent& event) {
        told << (isPress(event) ? u'+' : u'-') + QString::number(static_cast<int>(event.keyCode));
        lastFlags = event.flags;
        return Verdict::Swallow;
    })) {
    tap->setEnabled(true);
}

KeysInWindow::KeysInWindow()
    : m_window("/usr/bin/python3", {TALVERA_WAYLAND_WINDOW, "Keys"}) {
    if (!says(m_window, "focus"))
        throw std::runtime_error("the window doesn't take the focus");
}

KeysInWindow::~KeysInWindow() {
    for (const auto key : std::vector(m_held))
        m_keys.release(key);
}

void KeysInWindow::press(const std::vector<XKeycode>& pressed) {
    for (const auto key : pressed) {
        m_held.push_back(key);
        m_keys.press(key);
    }
}

void KeysInWindow::release(const std::vector<XKeycode>& released) {
    for (const auto key : released) {
        std::erase(m_held, key);
        m_keys.release(key);
    }
}

void KeysInWindow::tap(const std::vector<XKeycode>& tapped) {
    press(tapped);
    release({tapped.rbegin(), tapped.rend()});
}

bool KeysInWindow::becomes(const std::function<bool()>& condition) {
    return eventually(
        [&condition] {
            QCoreApplication::processEvents();
            return condition();
        },
        patience);
}

/// The keys come in order, so all are there once one comes that nobody has bound.
QStringList KeysInWindow::takeKeys() {
    const auto marker = Key::f5;
    m_keys.tap(marker);
    const auto end = u'-' + QString::number(indexOf(marker));
    QStringList keys;
    for (auto line = m_window.readLine(); line != end; line = m_window.readLine()) {
        if (line.isEmpty())
            throw std::runtime_error("the window hears no keys");
        if (line.startsWith(u'-') || (line.startsWith(u'+') && line.mid(1) != end.mid(1)))
            keys << line;
    }
    return keys;
}

} // namespace talvera::test
