// SPDX-License-Identifier: MIT
#include "Simulation.h"
#include "StoryFile.h"
#include "shortest.h"

#include <cstdlib>
#include <cstring>
#include <iomanip>
#include <iostream>
#include <map>
#include <vector>

using namespace talvera::simulation;

namespace {

/// In so many dictations every kind of fault occurs, or the simulation doesn't play what it should.
constexpr std::uint64_t dictationsForEveryFault = 15000;

struct Arguments {
    std::uint64_t first = 1;
    std::uint64_t count = 100;
    std::uint64_t leastDictations = 0;
    bool goesOn = false;  ///< beyond `count`, until there have been `leastDictations`
    bool surveys = false; ///< goes on after violations
    bool tells = false;   ///< the whole account of the last round
    const char* story = nullptr;
};

[[noreturn]] void usage() {
    std::cerr << "usage: simulation [--seeds FIRST COUNT [LEAST-DICTATIONS] | --dictations COUNT FIRST | "
                 "--survey FIRST COUNT | --seed N | --story FILE]\n";
    std::exit(2);
}

Arguments parse(int argc, char** argv) {
    const auto number = [&](int index) { return std::strtoull(argv[index], nullptr, 10); };
    Arguments arguments;
    if (argc == 3 && std::strcmp(argv[1], "--seed") == 0) {
        arguments.first = number(2);
        arguments.count = 1;
        arguments.tells = true;
    } else if (argc == 3 && std::strcmp(argv[1], "--story") == 0) {
        arguments.story = argv[2];
    } else if (argc == 4 && std::strcmp(argv[1], "--survey") == 0) {
        arguments.first = number(2);
        arguments.count = number(3);
        arguments.surveys = true;
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
              << tally.notSaved << " not saved; " << tally.partsAhead << " parts recognised ahead; "
              << tally.notStarted << " presses without a microphone; " << tally.acceptedLeaks
              << " files left as they must be\n";
}

void print(const FaultTally& faults) {
    for (std::size_t i = 0; i < faultCount; ++i)
        std::cout << std::setw(9) << faults.counts.at(i) << "  " << faultName(static_cast<Fault>(i)) << '\n';
}

void tellViolation(const Simulation& simulation, std::uint64_t seed, const char* program) {
    std::cout << "\nseed " << seed << ": " << simulation.violation()->toStdString()
              << "\nto see it again: " << program << " --seed " << seed << "\nthe same as a story, which "
              << program << " --story FILE plays:\n\n"
              << simulation.story().text().toStdString();
}

int judgeStory(const char* path) {
    const auto violation = Trial().run(Story::parse(readStoryFile(QString::fromLocal8Bit(path))));
    std::cout << (violation ? violation->toStdString() : "nothing is wrong") << '\n';
    return violation ? 1 : 0;
}

/// Every kind of violation among the seeds, with the seeds in which it is.
int survey(const Arguments& arguments) {
    std::map<QString, std::vector<std::uint64_t>> seedsOf;
    Tally total;
    for (auto seed = arguments.first; seed < arguments.first + arguments.count; ++seed) {
        Simulation simulation(seed);
        simulation.run();
        total += simulation.tally();
        if (const auto& violation = simulation.violation())
            seedsOf[kindOf(*violation)].push_back(seed);
    }
    for (const auto& [kind, seeds] : seedsOf) {
        std::cout << kind.toStdString() << ':';
        for (const auto seed : seeds)
            std::cout << ' ' << seed;
        std::cout << '\n';
    }
    print(total);
    return seedsOf.empty() ? 0 : 1;
}

int simulate(const Arguments& arguments, const char* program) {
    // Each seed is named before it is lived through: should one end in a crash or never, it is the last one
    // named.
    std::cout << "to see a seed again: " << program << " --seed N\nseeds" << std::flush;
    Tally total;
    FaultTally faults;
    const auto isEnough = [&](std::uint64_t seed) {
        return seed >= arguments.first + arguments.count &&
               !(arguments.goesOn && total.dictations < arguments.leastDictations);
    };
    for (auto seed = arguments.first; !isEnough(seed); ++seed) {
        std::cout << ' ' << seed << std::flush;
        Simulation simulation(seed);
        simulation.run();
        total += simulation.tally();
        faults += simulation.faults();
        if (arguments.tells) {
            std::cout << '\n';
            for (const auto& line : simulation.account())
                std::cout << line.toStdString() << '\n';
        }
        if (simulation.violation()) {
            tellViolation(simulation, seed, program);
            return 1;
        }
    }
    std::cout << '\n';
    print(faults);
    print(total);
    if (total.dictations < arguments.leastDictations) {
        std::cout << "these are fewer dictations than the " << arguments.leastDictations
                  << " that are wanted\n";
        return 1;
    }
    const auto missing = faults.missing();
    if (total.dictations >= dictationsForEveryFault && !missing.isEmpty()) {
        std::cout << "these faults never occurred: " << missing.join(QStringLiteral(", ")).toStdString()
                  << '\n';
        return 1;
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    const auto arguments = parse(argc, argv);
    try {
        if (arguments.story)
            return judgeStory(arguments.story);
        return arguments.surveys ? survey(arguments) : simulate(arguments, argv[0]);
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 2;
    }
}
