// SPDX-License-Identifier: MIT
// stories [--write] FILE...: plays the stories and tells where what follows is not what they say. --write
// puts what follows into the files instead, to be looked at before it is believed.
#include "StoryFile.h"
#include "StoryPlayer.h"

#include <cstring>
#include <exception>
#include <iostream>
#include <stdexcept>

using namespace talvera::simulation;

namespace {

/// Whether the story is told as it goes.
bool tell(const QString& path, bool writes) {
    const auto story = Story::parse(readStoryFile(path));
    auto played = story;
    played.columns.followed = StoryPlayer().play(story);
    if (writes)
        writeStoryFile(path, played.text());
    const auto told = story.columns.rows();
    const auto happened = played.columns.rows();
    if (writes || told == happened)
        return true;
    std::cout << path.toStdString() << ": - is what the story tells, + is what happened\n";
    for (const auto& line : differences(told, happened))
        std::cout << line.toStdString() << '\n';
    return false;
}

} // namespace

int main(int argc, char** argv) {
    const bool writes = argc > 1 && std::strcmp(argv[1], "--write") == 0;
    const int first = writes ? 2 : 1;
    if (first >= argc) {
        std::cerr << "usage: stories [--write] FILE...\n";
        return 2;
    }
    int status = 0;
    for (int index = first; index < argc; ++index) {
        try {
            if (!tell(QString::fromLocal8Bit(argv[index]), writes))
                status = 1;
        } catch (const std::exception& error) {
            std::cout << argv[index] << ": " << error.what() << '\n';
            status = 1;
        }
    }
    return status;
}
