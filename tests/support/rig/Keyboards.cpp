// SPDX-License-Identifier: MIT
//
// The hands on the keyboards and the mouse of a virtual desktop, which the display server takes for
// those of the user.
//
//   kbd serve CONTROL KEYBOARD0 KEYBOARD1 POINTER    the daemon of an X server; arguments are paths of
//                                                    sockets. It prints "ready".
//   kbd serve CONTROL                                the same of a Wayland compositor
//   kbd press KEYBOARD KEYCODE                       KEYBOARD is 0 or 1, KEYCODE an X keycode: 38 is A
//   kbd release KEYBOARD KEYCODE
//   kbd tap KEYBOARD KEYCODE [MILLISECONDS]          press, hold (30 ms unless told), release
//   kbd move DX DY                                   moves the pointer by so many pixels
//   kbd point X Y                                    moves the pointer to a place on the screen
//   kbd button-press BUTTON
//   kbd button-release BUTTON
//   kbd click [BUTTON]
//   kbd - < COMMANDS                                 one command per line; also "sleep MILLISECONDS"
//
// The client finds the daemon by $RIG_KEYBOARDS. A command returns when the server has worked the event off.
//
// Why a daemon: the X server's input driver serves one connection per device in its whole life, and once that
// is closed it spins at end of file; a compositor's keyboard is gone with who has made it.

#include "Hands.h"
#include "sockets.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <memory>
#include <optional>
#include <poll.h>
#include <sstream>
#include <stdexcept>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr int tapMs = 30;
constexpr int leftButton = 1;
constexpr int farOutside = 100'000; // pixels; further than any screen reaches

class Daemon {
public:
    Daemon(const std::string& control, std::unique_ptr<Hands> served)
        : hands(std::move(served))
        , listener(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        const sockaddr_un address = addressOf(control);
        unlink(control.c_str());
        if (bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
            listen(listener, 16) != 0)
            failWithErrno(control);
    }

    // Serves until the display server has gone.
    void serve() {
        for (;;) {
            std::vector<pollfd> waiting{{listener, POLLIN, 0}};
            for (const int descriptor : hands->descriptors())
                waiting.push_back({descriptor, POLLIN, 0});
            const std::size_t firstClient = waiting.size();
            for (const Client& client : clients)
                waiting.push_back({client.socket, POLLIN, 0});
            if (poll(waiting.data(), waiting.size(), -1) < 0)
                failWithErrno("poll");
            for (std::size_t i = 1; i < firstClient; ++i) {
                if (waiting[i].revents != 0 && !hands->listen())
                    return;
            }
            for (std::size_t i = clients.size(); i-- > 0;) {
                if (waiting[firstClient + i].revents != 0 && !serveClient(clients[i])) {
                    close(clients[i].socket);
                    clients.erase(clients.begin() + static_cast<std::ptrdiff_t>(i));
                }
            }
            if (waiting[0].revents != 0)
                clients.push_back({accept4(listener, nullptr, nullptr, SOCK_CLOEXEC), {}});
        }
    }

private:
    struct Client {
        int socket;
        std::string unread;
    };

    // Answers each whole line with "ok" or with what is wrong. False when the client has gone.
    bool serveClient(Client& client) {
        char bytes[256];
        const ssize_t count = read(client.socket, bytes, sizeof bytes);
        if (count <= 0)
            return false;
        client.unread.append(bytes, static_cast<std::size_t>(count));
        std::size_t end = 0;
        while ((end = client.unread.find('\n')) != std::string::npos) {
            const std::string problem = perform(client.unread.substr(0, end));
            client.unread.erase(0, end + 1);
            const std::string answer = (problem.empty() ? "ok" : problem) + "\n";
            if (send(client.socket, answer.data(), answer.size(), MSG_NOSIGNAL) < 0)
                return false;
        }
        return true;
    }

    std::string perform(const std::string& line) {
        std::istringstream words(line);
        std::string verb;
        int first = 0;
        int second = 0;
        words >> verb >> first;
        if (!words)
            return "not understood: " + line;
        words >> second;
        const bool hasSecond = static_cast<bool>(words);
        if ((verb == "press" || verb == "release") && hasSecond) {
            if (first != 0 && first != 1)
                return "no such keyboard: " + line;
            if (second < 8 || second > 255)
                return "no such keycode: " + line;
            hands->key(first, second, verb == "press");
        } else if (verb == "move" && hasSecond) {
            hands->move(first, second);
        } else if (verb == "button-press" || verb == "button-release") {
            hands->button(first, verb == "button-press");
        } else {
            return "not understood: " + line;
        }
        return {};
    }

    std::unique_ptr<Hands> hands;
    std::vector<Client> clients;
    int listener;
};

// The side that a person or a script talks to.
class Client {
public:
    explicit Client(const std::string& control)
        : socket(connectTo(control)) {}

    void run(const std::vector<std::string>& words) {
        const std::string& verb = words.front();
        const auto number = [&words](std::size_t index, std::optional<int> fallback = {}) {
            if (index < words.size())
                return std::stoi(words[index]);
            if (!fallback)
                fail(words.front() + ": a number is missing");
            return *fallback;
        };
        if (verb == "tap") {
            const std::string key = std::to_string(number(1)) + " " + std::to_string(number(2));
            request("press " + key);
            sleepFor(number(3, tapMs));
            request("release " + key);
        } else if (verb == "click") {
            const std::string button = std::to_string(number(1, leftButton));
            request("button-press " + button);
            sleepFor(tapMs);
            request("button-release " + button);
        } else if (verb == "point") {
            request("move " + std::to_string(-farOutside) + " " + std::to_string(-farOutside));
            request("move " + std::to_string(number(1)) + " " + std::to_string(number(2)));
        } else if (verb == "sleep") {
            sleepFor(number(1));
        } else {
            std::string line;
            for (const std::string& word : words)
                line += line.empty() ? word : " " + word;
            request(line);
        }
    }

private:
    void request(const std::string& line) {
        const std::string bytes = line + "\n";
        writeAll(socket, bytes.data(), bytes.size());
        std::string answer;
        while (answer.find('\n') == std::string::npos) {
            char part[128];
            const ssize_t count = read(socket, part, sizeof part);
            if (count <= 0)
                fail("the keyboards are gone");
            answer.append(part, static_cast<std::size_t>(count));
        }
        if (answer != "ok\n")
            fail(answer.substr(0, answer.find('\n')));
    }

    static void sleepFor(int milliseconds) { usleep(static_cast<useconds_t>(milliseconds) * 1000); }

    int socket;
};

std::vector<std::string> wordsOf(const std::string& line) {
    std::istringstream stream(line);
    std::vector<std::string> words;
    for (std::string word; stream >> word;)
        words.push_back(word);
    return words;
}

int runClient(const std::vector<std::string>& arguments) {
    const char* control = std::getenv("RIG_KEYBOARDS");
    if (control == nullptr)
        fail("RIG_KEYBOARDS isn't set: run inside a rig");
    Client client(control);
    if (arguments != std::vector<std::string>{"-"}) {
        client.run(arguments);
        return 0;
    }
    for (std::string line; std::getline(std::cin, line);) {
        const std::vector<std::string> words = wordsOf(line);
        if (!words.empty())
            client.run(words);
    }
    return 0;
}

std::unique_ptr<Hands> handsInSession() {
    const char* variable = std::getenv("RIG_SESSION");
    const std::string session = variable == nullptr ? "" : variable;
    if (session == "gnome")
        return handsOnGnome();
    return session == "kwin" ? handsOnKwin() : handsOnWayland();
}

int run(const std::vector<std::string>& arguments) {
    if (arguments.empty())
        fail("usage: see the head of Keyboards.cpp");
    if (arguments.front() != "serve")
        return runClient(arguments);
    if (arguments.size() != 2 && arguments.size() != 5)
        fail("usage: kbd serve CONTROL [KEYBOARD0 KEYBOARD1 POINTER]");
    Daemon daemon(arguments[1], arguments.size() == 2 ? handsInSession()
                                                      : handsOnX({arguments.begin() + 2, arguments.end()}));
    std::cout << "ready" << std::endl;
    daemon.serve();
    return 0;
}

} // namespace

int main(int count, char** arguments) {
    try {
        return run({arguments + 1, arguments + count});
    } catch (const std::exception& error) {
        std::fprintf(stderr, "kbd: %s\n", error.what());
        return 1;
    }
}
