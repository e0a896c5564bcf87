// SPDX-License-Identifier: MIT
#include "Faults.h"

namespace talvera::simulation {

namespace {

constexpr std::array<const char*, faultCount> names{
    "focus moved while typing",
    "window closed while typing",
    "other window of the program while typing",
    "pop-up while typing",
    "screen locked while typing",
    "focus moved while the main thread was held",
    "application not brought back",
    "accessibility slow",
    "accessibility silent",
    "recogniser failed",
    "recogniser left no text",
    "recogniser left an empty file",
    "recogniser left a cut file",
    "recogniser gone",
    "prepared recogniser killed",
    "model replaced during a recording",
    "memory short for a prepared recogniser",
    "recogniser failed while the user spoke",
    "recognised ahead in vain",
    "keys refused",
    "keyboard cut off",
    "clipboard refused",
    "clipboard taken",
    "paste ignored",
    "keys and clipboard refused",
    "microphone refused",
    "microphone lost",
    "permission taken",
    "keys not heard",
    "recording not saved",
    "nothing deleted",
    "directory gone",
    "statistics refused",
    "preferences refused",
    "language model refused the language",
    "language model refused",
    "language model broke off",
    "language model wrote nothing",
    "model came",
    "model came in half",
    "download broken off",
    "network gone during a download",
    "download begun anew",
    "killed during a download",
    "killed idle",
    "killed while recording",
    "killed while recognising",
    "killed while typing",
    "started again",
    "clock set forward",
    "clock set back",
};

} // namespace

const char* faultName(Fault fault) {
    return names.at(static_cast<std::size_t>(fault));
}

FaultTally& FaultTally::operator+=(const FaultTally& other) {
    for (std::size_t i = 0; i < faultCount; ++i)
        counts.at(i) += other.counts.at(i);
    return *this;
}

QStringList FaultTally::missing() const {
    QStringList missing;
    for (std::size_t i = 0; i < faultCount; ++i) {
        if (counts.at(i) == 0)
            missing << QString::fromUtf8(names.at(i));
    }
    return missing;
}

void FaultLog::note(Fault fault) {
    ++m_tally.counts.at(static_cast<std::size_t>(fault));
    m_sinceRest.set(static_cast<std::size_t>(fault));
}

} // namespace talvera::simulation
