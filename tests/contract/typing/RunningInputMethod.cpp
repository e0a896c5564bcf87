// SPDX-License-Identifier: MIT
#include "RunningInputMethod.h"

#include "TypingTools.h"
#include "linux/x11/server/X11Server.h"
#include "linux/x11/typing/InputMethod.h"
#include "receivers/processGroup.h"

#include <QDir>
#include <QFile>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <sys/wait.h>
#include <thread>

namespace talvera::test {

namespace {

void write(const QString& path, const QByteArray& text) {
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size()) {
        throw std::runtime_error("can't write the input method's settings");
    }
}

constexpr char pinyinAlone[] = "[Groups/0]\nName=Default\nDefault Layout=us\nDefaultIM=pinyin\n"
                               "[Groups/0/Items/0]\nName=pinyin\nLayout=\n"
                               "[GroupOrder]\n0=Default\n";

template <typename Condition>
void await(Condition condition, const char* what) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) {
            throw std::runtime_error(what);
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
}

} // namespace

RunningInputMethod::RunningInputMethod(Kind kind) {
    const std::string home = m_home.path().toStdString();
    const std::string name = kind == Kind::FcitxPinyin ? "fcitx" : "ibus";
    set("HOME", home);
    set("XDG_CONFIG_HOME", home + "/.config");
    set("XDG_CACHE_HOME", home + "/.cache");
    set("XDG_DATA_HOME", home + "/.local/share");
    set("GSETTINGS_BACKEND", "keyfile");
    set("PATH", "/usr/bin:/bin"); // engines are programs of the system's own Python
    set("GTK_IM_MODULE", name);
    set("QT_IM_MODULE", name);
    set("XMODIFIERS", "@im=" + name);
    if (kind == Kind::FcitxPinyin) {
        write(m_home.filePath(".config/fcitx5/profile"), pinyinAlone);
        write(m_home.filePath(".config/fcitx5/config"), "[Behavior]\nActiveByDefault=True\n");
        m_process = startProcessGroup({"fcitx5", "--replace", "--disable=notificationitem,cloudpinyin"});
    } else {
        // Both engines begin with Latin letters by default.
        outputOf("gsettings set org.freedesktop.ibus.engine.hangul initial-input-mode hangul");
        outputOf("gsettings set org.freedesktop.ibus.engine.anthy.common input-mode 0");
        m_process = startProcessGroup({"ibus-daemon", "--xim", "--panel=disable"});
    }
    const auto connection = X11Server().connect();
    await([&] { return inputMethod(*connection) != InputMethod::None; },
          "the input method doesn't announce itself");
    if (kind != Kind::FcitxPinyin) {
        const std::string engine = kind == Kind::IbusHangul ? "hangul" : "anthy";
        await(
            [&] { return outputOf("ibus engine " + engine + " 2>/dev/null; ibus engine").find(engine) == 0; },
            "the input method's engine doesn't start");
    }
}

RunningInputMethod::~RunningInputMethod() {
    if (m_process > 0) {
        ::kill(-m_process, SIGTERM);
        ::waitpid(m_process, nullptr, 0);
    }
    for (const auto& [name, value] : m_before) {
        ::setenv(name.c_str(), value.c_str(), 1);
    }
    for (const auto& name : m_new) {
        ::unsetenv(name.c_str());
    }
}

void RunningInputMethod::set(const char* name, const std::string& value) {
    if (const char* before = std::getenv(name)) {
        m_before.emplace_back(name, before);
    } else {
        m_new.emplace_back(name);
    }
    ::setenv(name, value.c_str(), 1);
}

} // namespace talvera::test
