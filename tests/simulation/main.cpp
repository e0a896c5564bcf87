// SPDX-License-Identifier: MIT
#include "Simulation.h"

#include <cstdlib>
#include <cstring>
#include <iostream>

using namespace talvera::simulation;

namespace {

struct Arguments {
    std::uint64_t first = 1;
    std::uint64_t count = 100;
    bool tells = false; ///< the whole account of the last round
};

[[noreturn]] void usage() {
    std::cerr << "usage: simulation [--seeds FIRST COUNT | --seed N]\n";
    std::exit(2);
}

Arguments parse(int argc, char** argv) {
    Arguments arguments;
    if (argc == 3 && std::strcmp(argv[1], "--seed") == 0) {
        arguments = {std::strtoull(argv[2], nullptr, 10), 1, true};
    } else if (argc == 4 && std::strcmp(argv[1], "--seeds") == 0) {
        arguments = {std::strtoull(argv[2], nullptr, 10), std::strtoull(argv[3], nullptr, 10), false};
    } else if (argc != 1) {
        usage();
    }
    return arguments;
}

void print(const Tally& tally) {
    std::cout << tally.dictations << " dictations: " << tally.typed << " typed, " << tally.pasted
              << " pasted, " << tally.toClipboard << " to the clipboard, " << tally.discarded
              << " too short, " << tally.empty << " without words, " << tally.failed << " not recognised, "
              << tally.notSaved << " not saved; " << tally.notStarted << " presses without a microphone; "
              << tally.acceptedLeaks << " files left as they must be\n";
}

} // namespace

int main(int argc, char** argv) {
    const auto arguments = parse(argc, argv);
    Tally total;
    for (auto seed = arguments.first; seed < arguments.first + arguments.count; ++seed) {
        Simulation simulation(seed);
        simulation.run();
        total += simulation.tally();
        const auto& violation = simulation.violation();
        if (arguments.tells || violation) {
            for (const auto& line : simulation.account())
                std::cout << line.toStdString() << '\n';
        }
        if (violation) {
            std::cout << "seed " << seed << ": " << violation->toStdString()
                      << "\nto see it again: " << argv[0] << " --seed " << seed << '\n';
            return 1;
        }
    }
    std::cout << "seeds " << arguments.first << " to " << arguments.first + arguments.count - 1 << '\n';
    print(total);
    return 0;
}
