// SPDX-License-Identifier: MIT
#include "linux/clipboard/WipedText.h"

#include <cstring>

namespace talvera {

namespace {

void wipe(std::string* text) {
    ::explicit_bzero(text->data(), text->size());
    delete text;
}

} // namespace

std::shared_ptr<std::string> makeWipedText(std::size_t size) {
    return {new std::string(size, '\0'), &wipe};
}

} // namespace talvera
