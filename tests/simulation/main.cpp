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
    std::uint64_t leastDictations = 0;
    bool goesOn = false; ///< beyond `count`, until there have been `leastDictations`
    bool tells = false;  ///< the whole account of the last round
};

[[noreturn]] void usage() {
    std::cerr << "usage: simulation [--seeds FIRST COUNT [LEAST-DICTATIONS] | --dictations COUNT FIRST | "
                 "--seed N]\n";
    std::exit(2);
}

Arguments parse(int argc, char** argv) {
    const auto number = [&](int index) { return std::strtoull(argv[index], nullptr, 10); };
    Arguments arguments;
    if (argc == 3 && std::strcmp(argv[1], "--seed") == 0) {
        arguments.first = number(2);
        arguments.count = 1;
        arguments.tells = true;
    } else if (argc == 4 && std::strcmp(argv[1], "--dictations") == 0) {
        arguments.first = number(3);
        arguments.count = 0;
        arguments.leastDictations = number(2);
        arguments.goesOn = true;
    } else if ((argc == 4 || argc == 5) && std::strcmp(argv[1], "--seeds") == 0) {
        arguments.first = number(2);
        arguments.count = number(3);
        arguments.leastDictations = argc == 5 ? number(4) : 0;
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
    // Each seed is named before it is lived through: should one end in a crash or never, it is the last one
    // named.
    std::cout << "to see a seed again: " << argv[0] << " --seed N\nseeds" << std::flush;
    Tally total;
    const auto isEnough = [&](std::uint64_t seed) {
        return seed >= arguments.first + arguments.count &&
               !(arguments.goesOn && total.dictations < arguments.leastDictations);
    };
    for (auto seed = arguments.first; !isEnough(seed); ++seed) {
        std::cout << ' ' << seed << std::flush;
        Simulation simulation(seed);
        simulation.run();
        total += simulation.tally();
        const auto& violation = simulation.violation();
        if (arguments.tells || violation) {
            std::cout << '\n';
            for (const auto& line : simulation.account())
                std::cout << line.toStdString() << '\n';
        }
        if (violation) {
            std::cout << "seed " << seed << ": " << violation->toStdString()
                      << "\nto see it again: " << argv[0] << " --seed " << seed << '\n';
            return 1;
        }
    }
    std::cout << '\n';
    print(total);
    if (total.dictations < arguments.leastDictations) {
        std::cout << "these are fewer dictations than the " << arguments.leastDictations
                  << " that are wanted\n";
        return 1;
    }
    return 0;
}
