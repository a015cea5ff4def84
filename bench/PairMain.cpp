// Runs two commands in turn and prints medians and the median of the ratios of the pairs.
//
//   bench_pair RUNS STATUS COMMAND [ARGUMENT...] -- YARDSTICK [ARGUMENT...]
//   bench_pair RUNS told COMMAND [ARGUMENT...] -- YARDSTICK [ARGUMENT...]
//
// STATUS is the exit status that the command must end with; that of the yardstick is 0. With "told"
// both take the time of their work themselves and print it.
//
// One line: wall time of both in ms and their ratio, CPU time of both in ms and their ratio.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "bench/ChildRun.h"
#include "bench/PairTimes.h"

using Corvel::Bench::PairTimes;
using Corvel::Bench::RunChild;
using Corvel::Bench::RunTellingChild;

int main(int argc, char** argv) {
    const std::vector<std::string> words(argv, argv + argc);
    const auto separator = std::find(words.begin(), words.end(), "--");
    const int count = argc > 2 ? std::atoi(argv[1]) : 0;
    if (count < 1 || separator - words.begin() < 4 || words.end() - separator < 2) {
        std::fputs("usage: bench_pair RUNS STATUS COMMAND... -- YARDSTICK...\n", stderr);
        return EXIT_FAILURE;
    }
    const bool told = words[2] == "told";
    const int status = told ? EXIT_SUCCESS : std::atoi(argv[2]);
    const std::vector<std::string> command(words.begin() + 3, separator);
    const std::vector<std::string> yardstick(separator + 1, words.end());
    // Once each unmeasured: the files are in memory then.
    RunChild(command, status);
    RunChild(yardstick);
    PairTimes pairs;
    for (int i = 0; i < count; ++i) {
        pairs.runs.push_back(told ? RunTellingChild(command) : RunChild(command, status));
        pairs.yardsticks.push_back(told ? RunTellingChild(yardstick) : RunChild(yardstick));
    }
    pairs.Print();
    return EXIT_SUCCESS;
}
