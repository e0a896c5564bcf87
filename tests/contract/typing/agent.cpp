// SPDX-License-Identifier: MIT
//
// x11-agent COMPANION: types and pastes as the agent does, in a process that a test can stop or kill at any
// point. It says "done" when it is ready, takes one command a line and answers each the same way.
//
//   clipboard TEXT    puts the text on the clipboard
//   begin TEXT        begins to type the text
//   down N, up N      posts the key down or key up of its chunk N
//   end               ends the typing

#include "RecordingConsole.h"
#include "linux/x11/clipboard/X11Pasteboard.h"
#include "linux/x11/typing/X11KeyEventPoster.h"
#include "text/typewriterChunks.h"

#include <QString>

#include <iostream>
#include <string>

using namespace talvera;

int main(int argc, char** argv) {
    X11KeyEventPoster poster{X11Server()};
    test::RecordingConsole console;
    X11Pasteboard pasteboard(console, argc > 1 ? argv[1] : "", X11Server());
    std::unique_ptr<TypingSession> session;
    std::cout << "done" << std::endl;
    for (std::string line; std::getline(std::cin, line);) {
        const std::size_t space = line.find(' ');
        const std::string command = line.substr(0, space);
        const std::string argument = space != std::string::npos ? line.substr(space + 1) : std::string();
        if (command == "clipboard") {
            pasteboard.setString(QString::fromStdString(argument));
        } else if (command == "begin") {
            session = poster.beginTyping(typewriterChunks(QString::fromStdString(argument)), nullptr);
        } else if (command == "down" || command == "up") {
            session->post(std::stoi(argument), command == "down" ? KeyPhase::Down : KeyPhase::Up);
        } else if (command == "end") {
            session.reset();
        }
        std::cout << "done" << std::endl;
    }
}
