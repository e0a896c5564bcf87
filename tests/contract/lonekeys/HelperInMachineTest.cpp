// SPDX-License-Identifier: MIT
// The helper beside keyboards of the kernel's. Containers have none, so this runs in a virtual machine
// (in-a-machine), where it is all that there is: the helper is the file /talvera-lone-keys, and nothing else
// asks for the devices.
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <linux/input.h>
#include <linux/uinput.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto helperPath = "/talvera-lone-keys";
constexpr gid_t readers = 104; // as Debian's group input is numbered often
constexpr uid_t user = 1000;
constexpr auto patience = 30s; // the machine is emulated

void check(bool isDone, const char* what) {
    if (!isDone)
        throw std::runtime_error(std::string(what) + ": " + std::strerror(errno));
}

/// A keyboard with all keys, or with these alone, whose node the readers may read.
class Keyboard {
public:
    explicit Keyboard(const std::vector<int>& keys = {}) {
        check(m_device >= 0, "/dev/uinput");
        ::ioctl(m_device, UI_SET_EVBIT, EV_KEY);
        for (int key = 1; key < 248; ++key) {
            if (keys.empty())
                ::ioctl(m_device, UI_SET_KEYBIT, key);
        }
        for (const int key : keys)
            ::ioctl(m_device, UI_SET_KEYBIT, key);
        uinput_setup setup{};
        setup.id = {BUS_USB, 1, 1, 1};
        std::strcpy(setup.name, "keyboard"); // NOLINT: shorter than its place
        check(::ioctl(m_device, UI_DEV_SETUP, &setup) == 0 && ::ioctl(m_device, UI_DEV_CREATE) == 0,
              "create");
        const auto node = awaitNode();
        check(::chown(node.c_str(), 0, readers) == 0 && ::chmod(node.c_str(), 0640) == 0, "node");
    }
    Keyboard(const Keyboard&) = delete;
    Keyboard& operator=(const Keyboard&) = delete;
    ~Keyboard() { ::close(m_device); }

    void press(int key) { put(key, 1); }
    void repeat(int key) { put(key, 2); }
    void release(int key) { put(key, 0); }
    void tap(int key) {
        press(key);
        release(key);
    }

private:
    void put(int key, int value) {
        const std::array events{input_event{{}, EV_KEY, static_cast<std::uint16_t>(key), value},
                                input_event{{}, EV_SYN, SYN_REPORT, 0}};
        check(::write(m_device, events.data(), sizeof events) == sizeof events, "write");
    }
    std::string awaitNode() const {
        std::array<char, 64> name{};
        check(::ioctl(m_device, UI_GET_SYSNAME(name.size()), name.data()) >= 0, "name");
        const auto place = std::filesystem::path("/sys/devices/virtual/input") / name.data();
        for (const auto deadline = Clock::now() + patience; Clock::now() < deadline;) {
            for (const auto& entry : std::filesystem::directory_iterator(place)) {
                const auto node = std::filesystem::path("/dev/input") / entry.path().filename();
                if (entry.path().filename().string().starts_with("event") && std::filesystem::exists(node))
                    return node;
            }
            ::usleep(1000);
        }
        throw std::runtime_error("the keyboard has no node");
    }

    const int m_device = ::open("/dev/uinput", O_WRONLY | O_NONBLOCK | O_CLOEXEC);
};

/// The helper, started by a user who isn't in the group.
class Helper {
public:
    explicit Helper(std::vector<std::string> words = {std::to_string(KEY_RIGHTCTRL)}) {
        words.insert(words.begin(), helperPath);
        std::vector<char*> arguments;
        for (auto& word : words)
            arguments.push_back(word.data());
        arguments.push_back(nullptr);
        int input[2];
        int output[2];
        check(::pipe2(input, O_CLOEXEC) == 0 && ::pipe2(output, O_CLOEXEC) == 0, "pipe");
        m_process = ::fork();
        if (m_process == 0) {
            ::dup2(input[0], STDIN_FILENO);
            ::dup2(output[1], STDOUT_FILENO);
            if (::setgroups(0, nullptr) == 0 && ::setgid(user) == 0 && ::setuid(user) == 0)
                ::execv(helperPath, arguments.data());
            ::_exit(127);
        }
        ::close(input[0]);
        ::close(output[1]);
        m_input = input[1];
        m_output = output[0];
    }
    Helper(const Helper&) = delete;
    Helper& operator=(const Helper&) = delete;
    ~Helper() {
        hangUp();
        ::close(m_output);
        if (m_process > 0)
            exitStatus();
    }

    void hangUp() { ::close(std::exchange(m_input, -1)); }

    /// Waits for its end.
    int exitStatus() {
        int status = 0;
        check(::waitpid(std::exchange(m_process, -1), &status, 0) > 0, "waitpid");
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    /// The next line that it tells; nothing when it has ended.
    std::optional<std::string> line() {
        for (;;) {
            if (const auto end = m_unread.find('\n'); end != std::string::npos) {
                const auto line = m_unread.substr(0, end);
                m_unread.erase(0, end + 1);
                return line;
            }
            pollfd source{m_output, POLLIN, 0};
            if (::poll(&source, 1, std::chrono::milliseconds(patience).count()) <= 0)
                return "(it says nothing)";
            std::array<char, 256> bytes{};
            const auto count = ::read(m_output, bytes.data(), bytes.size());
            if (count <= 0)
                return std::nullopt;
            m_unread.append(bytes.data(), static_cast<std::size_t>(count));
        }
    }

    pid_t process() const { return m_process; }

private:
    pid_t m_process = -1;
    int m_input = -1;
    int m_output = -1;
    std::string m_unread;
};

/// How often the helper has been woken so far.
long wakeUps(pid_t process) {
    std::FILE* file = std::fopen(("/proc/" + std::to_string(process) + "/status").c_str(), "r");
    std::array<char, 256> line{};
    long switches = -1;
    while (file != nullptr && std::fgets(line.data(), line.size(), file) != nullptr)
        std::sscanf(line.data(), "voluntary_ctxt_switches: %ld", &switches); // NOLINT(cert-err34-c)
    if (file != nullptr)
        std::fclose(file);
    return switches;
}

class LoneKeysHelper : public testing::Test {
protected:
    static void expectKeyboards(Helper& helper, int count) {
        EXPECT_EQ(helper.line(), "keyboards " + std::to_string(count));
    }
};

} // namespace

TEST_F(LoneKeysHelper, keyAskedFor_isToldDownAndUp) {
    Keyboard keyboard;
    Helper helper;
    expectKeyboards(helper, 1);
    keyboard.press(KEY_RIGHTCTRL);
    EXPECT_EQ(helper.line(), "down 97");
    keyboard.release(KEY_RIGHTCTRL);
    EXPECT_EQ(helper.line(), "up 97");
}

TEST_F(LoneKeysHelper, otherKeys_areNotTold) {
    Keyboard keyboard;
    Helper helper;
    expectKeyboards(helper, 1);
    for (const int key : {KEY_P, KEY_A, KEY_S, KEY_S, KEY_LEFTCTRL, KEY_RIGHTALT})
        keyboard.tap(key);
    keyboard.tap(KEY_RIGHTCTRL);
    EXPECT_EQ(helper.line(), "down 97");
    EXPECT_EQ(helper.line(), "up 97");
}

TEST_F(LoneKeysHelper, otherKeys_dontWakeIt) {
    Keyboard keyboard;
    Helper helper;
    expectKeyboards(helper, 1);
    const long before = wakeUps(helper.process());
    ASSERT_GE(before, 0);
    constexpr int typed = 200;
    for (int i = 0; i < typed; ++i)
        keyboard.tap(KEY_A);
    keyboard.tap(KEY_RIGHTCTRL);
    EXPECT_EQ(helper.line(), "down 97");
    EXPECT_EQ(helper.line(), "up 97");
    EXPECT_LT(wakeUps(helper.process()) - before, typed / 10);
}

TEST_F(LoneKeysHelper, otherKeysWhileItIsHeld_areToldOnceAPressAndNotByName) {
    Keyboard keyboard;
    Helper helper;
    expectKeyboards(helper, 1);
    for (int press = 0; press < 2; ++press) {
        keyboard.press(KEY_RIGHTCTRL);
        EXPECT_EQ(helper.line(), "down 97");
        keyboard.tap(KEY_RIGHT);
        keyboard.tap(KEY_RIGHT);
        EXPECT_EQ(helper.line(), "other");
        keyboard.release(KEY_RIGHTCTRL);
        EXPECT_EQ(helper.line(), "up 97");
    }
}

TEST_F(LoneKeysHelper, repeats_areNotTold) {
    Keyboard keyboard;
    Helper helper;
    expectKeyboards(helper, 1);
    keyboard.press(KEY_RIGHTCTRL);
    keyboard.repeat(KEY_RIGHTCTRL);
    keyboard.repeat(KEY_RIGHTCTRL);
    keyboard.release(KEY_RIGHTCTRL);
    EXPECT_EQ(helper.line(), "down 97");
    EXPECT_EQ(helper.line(), "up 97");
}

TEST_F(LoneKeysHelper, keyOnTwoKeyboards_isUpWhenBothAre) {
    Keyboard one;
    Keyboard two;
    Helper helper;
    expectKeyboards(helper, 2);
    one.press(KEY_RIGHTCTRL);
    EXPECT_EQ(helper.line(), "down 97");
    two.press(KEY_RIGHTCTRL);
    one.release(KEY_RIGHTCTRL);
    two.press(KEY_A);
    EXPECT_EQ(helper.line(), "other");
    two.release(KEY_A);
    two.release(KEY_RIGHTCTRL);
    EXPECT_EQ(helper.line(), "up 97");
}

TEST_F(LoneKeysHelper, keyboardThatComes_isHeard) {
    Keyboard first;
    Helper helper;
    expectKeyboards(helper, 1);
    Keyboard second;
    expectKeyboards(helper, 2);
    second.press(KEY_RIGHTCTRL);
    EXPECT_EQ(helper.line(), "down 97");
}

TEST_F(LoneKeysHelper, keyboardThatGoesWithItsKeyHeld_letsGoOfIt) {
    std::optional<Keyboard> keyboard(std::in_place);
    Helper helper;
    expectKeyboards(helper, 1);
    keyboard->press(KEY_RIGHTCTRL);
    EXPECT_EQ(helper.line(), "down 97");
    keyboard.reset();
    EXPECT_EQ(helper.line(), "up 97");
    expectKeyboards(helper, 0);
}

TEST_F(LoneKeysHelper, deviceWithoutTheKey_isNotOpened) {
    Keyboard mouse({BTN_LEFT, BTN_RIGHT});
    Helper helper;
    expectKeyboards(helper, 0);
}

TEST_F(LoneKeysHelper, moreEventsThanTheKernelKeeps_leaveNothingHeld) {
    Keyboard keyboard;
    Helper helper;
    expectKeyboards(helper, 1);
    ::kill(helper.process(), SIGSTOP);
    keyboard.press(KEY_RIGHTCTRL);
    for (int i = 0; i < 500; ++i) {
        keyboard.release(KEY_RIGHTCTRL);
        keyboard.press(KEY_RIGHTCTRL);
    }
    keyboard.release(KEY_RIGHTCTRL);
    ::kill(helper.process(), SIGCONT);
    keyboard.tap(KEY_RIGHTCTRL);
    std::string last;
    int ends = 0;
    for (int held = 0; ends == 0 || held != 0;) { // it tells the two by turns
        const auto line = helper.line();
        ASSERT_TRUE(line == "down 97" || line == "up 97") << line.value_or("ended");
        held += *line == "down 97" ? 1 : -1;
        ends += *line == "up 97" ? 1 : 0;
        ASSERT_TRUE(held == 0 || held == 1);
    }
}

TEST_F(LoneKeysHelper, keysThatWriteSomething_areRefused) {
    constexpr int usage = 2;
    EXPECT_EQ(Helper({std::to_string(KEY_A)}).exitStatus(), usage);
    EXPECT_EQ(Helper({std::to_string(KEY_RIGHTCTRL), std::to_string(KEY_SPACE)}).exitStatus(), usage);
    EXPECT_EQ(Helper({"97x"}).exitStatus(), usage);
    EXPECT_EQ(Helper({""}).exitStatus(), usage);
    EXPECT_EQ(Helper(std::vector<std::string>{}).exitStatus(), usage);
}

TEST_F(LoneKeysHelper, itsReaderGone_itEnds) {
    Keyboard keyboard;
    Helper helper;
    expectKeyboards(helper, 1);
    helper.hangUp();
    EXPECT_EQ(helper.exitStatus(), 0);
}

TEST_F(LoneKeysHelper, itsUser_canNotReadKeyboardsWithoutIt) {
    Keyboard keyboard;
    const pid_t process = ::fork();
    if (process == 0) {
        bool isOpened = false;
        if (::setgroups(0, nullptr) == 0 && ::setgid(user) == 0 && ::setuid(user) == 0) {
            for (const auto& entry : std::filesystem::directory_iterator("/dev/input"))
                isOpened = isOpened || ::open(entry.path().c_str(), O_RDONLY) >= 0;
        }
        ::_exit(isOpened ? 1 : 0);
    }
    int status = -1;
    ::waitpid(process, &status, 0);
    EXPECT_EQ(status, 0);
}

TEST_F(LoneKeysHelper, itsUser_canNotLookIntoIt) {
    Keyboard keyboard;
    Helper helper;
    expectKeyboards(helper, 1);
    const pid_t process = ::fork();
    if (process == 0) {
        bool isOpened = false;
        const auto memory = "/proc/" + std::to_string(helper.process()) + "/mem";
        if (::setgroups(0, nullptr) == 0 && ::setgid(user) == 0 && ::setuid(user) == 0)
            isOpened = ::open(memory.c_str(), O_RDONLY) >= 0;
        ::_exit(isOpened ? 1 : 0);
    }
    int status = -1;
    ::waitpid(process, &status, 0);
    EXPECT_EQ(status, 0);
}
