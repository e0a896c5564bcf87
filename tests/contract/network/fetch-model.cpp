// SPDX-License-Identifier: MIT
// fetch-model DATA URL SHA256 SIZE AUTHORITY: fetches a model as the program does, in a process that tests
// may kill or stop. Prints each phase in a line, and ends when it is done or has failed.
#include "ModelHome.h"

#include <QCoreApplication>

#include <cstdio>

using namespace talvera;
using namespace talvera::test;

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    const auto arguments = QCoreApplication::arguments();
    if (arguments.size() != 6)
        return 2;
    ModelHome home(arguments[1], {{QUrl(arguments[2]), arguments[3], arguments[4].toLongLong()}, {}},
                   {.trustedToo = arguments[5]});
    const auto print = [](const char* line) {
        std::puts(line);
        std::fflush(stdout);
    };
    const auto observation = home.downloader.phase.observe([&](const ModelDownloader::Phase& phase) {
        using Phase = ModelDownloader::Phase;
        switch (phase.kind()) {
        case Phase::Verifying:
            print("verifying");
            break;
        case Phase::Done:
            print("done");
            QCoreApplication::exit(0);
            break;
        case Phase::Failed:
            print(qUtf8Printable("failed: " + phase.message()));
            QCoreApplication::exit(1);
            break;
        default:
            break;
        }
    });
    const auto progress = home.downloader.bytesWritten.observe([&](std::int64_t bytes) {
        if (bytes > 0)
            print("bytes");
    });
    home.actor.post([&] { home.downloader.start(); });
    return QCoreApplication::exec();
}
