// SPDX-License-Identifier: MIT
// instant-recogniser ... -of BASE ...: stands in for the recogniser where only our own part is to be
// measured. Writes what the file "text" beside it holds to BASE.txt.
#include <climits>
#include <cstring>
#include <string>

#include <fcntl.h>
#include <libgen.h>
#include <sys/sendfile.h>
#include <unistd.h>

int main(int argc, char** argv) {
    for (int i = 1; i + 1 < argc; ++i) {
        if (std::strcmp(argv[i], "-of") != 0)
            continue;
        const std::string output = std::string(argv[i + 1]) + ".txt";
        const std::string text = std::string(::dirname(argv[0])) + "/text";
        const int from = ::open(text.c_str(), O_RDONLY);
        const int to = ::open(output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        return ::sendfile(to, from, nullptr, INT_MAX) >= 0 ? 0 : 1;
    }
    return 1;
}
