// SPDX-License-Identifier: MIT
// talvera-lone-keys CODE...: tells when these keys go down and up, for sessions that tell of chords alone. It
// is installed with the group that may read keyboards, by those who want that; so it is small, opens them for
// reading alone, knows no more keys than askableKeys, and keeps all others to itself. It ends with its
// standard input.
#include "linux/lonekeys/helper/KeyTeller.h"
#include "linux/lonekeys/helper/SeatSession.h"
#include "linux/lonekeys/helper/WatchedKeyboard.h"
#include "linux/lonekeys/helper/askableKeys.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <sys/inotify.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

using namespace talvera;

namespace {

constexpr auto devices = "/dev/input";
constexpr int usage = 2;
constexpr int failure = 1;

/// The group of the file is ours only while a keyboard is being opened.
class ReadersGroup {
public:
    ReadersGroup()
        : m_readers(::getegid()) {
        drop();
    }
    void take() const { (void)!::setegid(m_readers); }
    void drop() const {
        if (::setegid(::getgid()) != 0)
            std::_Exit(failure);
    }

private:
    const gid_t m_readers;
};

std::optional<KeyCodes> keysAskedFor(int count, char** words) {
    KeyCodes keys;
    for (int i = 1; i < count; ++i) {
        const std::string_view word(words[i]);
        int code = 0;
        const auto [end, error] = std::from_chars(word.begin(), word.end(), code);
        if (error != std::errc() || end != word.end() || !isAskable(code))
            return std::nullopt;
        keys.insert(static_cast<std::uint16_t>(code));
    }
    return keys.empty() ? std::nullopt : std::optional(keys);
}

/// What whoever starts us has left open or set is his and nothing that we need.
void beginClean() {
    for (int descriptor = 0; descriptor <= 2; ++descriptor) {
        if (::fcntl(descriptor, F_GETFD) < 0 && ::open("/dev/null", O_RDWR) != descriptor)
            std::_Exit(failure);
    }
    ::close_range(3, ~0U, 0);
    ::clearenv();
    const rlimit none{0, 0};
    ::setrlimit(RLIMIT_CORE, &none);
    ::prctl(PR_SET_DUMPABLE, 0);
    ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    ::fcntl(STDOUT_FILENO, F_SETFL, O_NONBLOCK);
    if (::chdir("/") != 0)
        std::_Exit(failure);
}

class Watch {
public:
    explicit Watch(KeyCodes keys)
        : m_keys(std::move(keys)) {
        // A new device can be opened when its group has been set, which comes after its node.
        ::inotify_add_watch(m_news.get(), devices, IN_CREATE | IN_ATTRIB | IN_MOVED_TO);
    }

    /// Returns when the reader has gone.
    void run() {
        bool goesOn = lookAround();
        while (goesOn)
            goesOn = waitAndTell();
    }

private:
    /// Opens what has come since the last look, or gives up everything while another user sits there.
    bool lookAround() {
        if (!m_session.isActive())
            m_keyboards.clear();
        else
            openNewOnes();
        return m_teller.tellRest(m_keyboards) && m_teller.tellCount(m_keyboards.size());
    }

    void openNewOnes() {
        std::error_code none;
        for (const auto& entry : std::filesystem::directory_iterator(devices, none)) {
            const auto path = entry.path().string();
            if (!entry.path().filename().string().starts_with("event") ||
                std::ranges::find(m_keyboards, path, &WatchedKeyboard::path) != m_keyboards.end())
                continue;
            m_group.take();
            auto keyboard = WatchedKeyboard::open(path, m_keys);
            m_group.drop();
            if (keyboard)
                m_keyboards.push_back(std::move(*keyboard));
        }
    }

    bool waitAndTell() {
        std::vector<pollfd> sources{{STDIN_FILENO, POLLIN, 0},
                                    {STDOUT_FILENO, 0, 0},
                                    {m_session.descriptor(), POLLIN, 0},
                                    {m_news.get(), POLLIN, 0}};
        const auto own = sources.size();
        for (const auto& keyboard : m_keyboards)
            sources.push_back({keyboard.descriptor(), POLLIN, 0});
        if (::poll(sources.data(), sources.size(), -1) < 0)
            return errno == EINTR;
        if (sources[0].revents != 0 || sources[1].revents != 0)
            return false;
        bool hasChanged = sources[2].revents != 0 || (sources[3].revents != 0 && haveDevicesChanged());
        std::vector<KeyboardNews> news;
        std::vector<std::string> gone;
        for (std::size_t i = 0; i < m_keyboards.size(); ++i) {
            if (sources[own + i].revents == 0)
                continue;
            const auto told = m_keyboards[i].read();
            if (told)
                news.insert(news.end(), told->begin(), told->end());
            else
                gone.push_back(m_keyboards[i].path());
        }
        std::erase_if(m_keyboards, [&gone](const WatchedKeyboard& keyboard) {
            return std::ranges::find(gone, keyboard.path()) != gone.end();
        });
        hasChanged = hasChanged || !gone.empty();
        hearOthers(m_teller.isHeld() || !news.empty()); // before the press is told, so that none is missed
        const bool isRead = m_teller.tell(m_keyboards, news) && (!hasChanged || lookAround());
        hearOthers(m_teller.isHeld());
        return isRead;
    }

    void hearOthers(bool hear) {
        for (auto& keyboard : m_keyboards)
            keyboard.setHearsOthers(hear);
    }

    bool haveDevicesChanged() const {
        char notes[4096];
        return ::read(m_news.get(), notes, sizeof notes) > 0;
    }

    const ReadersGroup m_group;
    const KeyCodes m_keys;
    const FileDescriptor m_news{::inotify_init1(IN_CLOEXEC | IN_NONBLOCK)};
    SeatSession m_session;
    KeyTeller m_teller{STDOUT_FILENO};
    std::vector<WatchedKeyboard> m_keyboards;
};

} // namespace

int main(int count, char** words) {
    const auto keys = keysAskedFor(count, words);
    if (!keys) {
        std::fputs("talvera-lone-keys CODE...: of the keys that may be asked for\n", stderr);
        return usage;
    }
    beginClean();
    Watch(*keys).run();
    return 0;
}
