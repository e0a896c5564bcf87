// SPDX-License-Identifier: MIT
#pragma once

#include "platform/network/FileDownloads.h"

#include <QFile>

#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace talvera::test {

/// What is told of one download.
struct Watch {
    std::vector<qint64> written;
    std::vector<bool> waits;
    std::shared_ptr<DeliveredFile> file;
    std::optional<DownloadFailure> failure;
    int ends = 0;

    bool hasEnded() const { return ends > 0; }

    DownloadEvents events() {
        return {.wrote = [this](qint64 bytes) { written.push_back(bytes); },
                .waiting = [this](bool waiting) { waits.push_back(waiting); },
                .finished =
                    [this](std::shared_ptr<DeliveredFile> delivered) {
                        file = std::move(delivered);
                        ++ends;
                    },
                .failed =
                    [this](const PlatformError& error) {
                        failure = error.as<DownloadFailure>();
                        ++ends;
                    }};
    }
};

} // namespace talvera::test
