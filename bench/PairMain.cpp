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

namespace {

using Corvel::Bench::ChildRun;
using Corvel::Bench::RunChild;
using Corvel::Bench::RunTellingChild;

double Median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

double MedianOf(const std::vector<ChildRun>& runs, double ChildRun::*figure) {
    std::vector<double> values;
    values.reserve(runs.size());
    for (const ChildRun& run : runs) {
        values.push_back(run.*figure);
    }
    return Median(std::move(values));
}

double MedianRatio(const std::vector<ChildRun>& runs,
                   const std::vector<ChildRun>& yardsticks,
                   double ChildRun::*figure) {
    std::vector<double> ratios;
    for (std::size_t i = 0; i < runs.size(); ++i) {
        ratios.push_back(runs[i].*figure / yardsticks[i].*figure);
    }
    return Median(std::move(ratios));
}

void PrintTimes(const std::vector<ChildRun>& runs,
                const std::vector<ChildRun>& yardsticks,
                double ChildRun::*figure) {
    std::printf("%.3f %.3f %.3f ",
                MedianOf(runs, figure) * 1e3,
                MedianOf(yardsticks, figure) * 1e3,
                MedianRatio(runs, yardsticks, figure));
}

}  // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> words(argv, argv + argc);
    const auto separator = std::find(words.begin(), words.end(), "--");
    const int count = argc > 2 ? std::atoi(argv[1]) : 0;
    if (count < 1 || separator == words.end()) {
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
    std::vector<ChildRun> runs;
    std::vector<ChildRun> yardsticks;
    for (int i = 0; i < count; ++i) {
        runs.push_back(told ? RunTellingChild(command) : RunChild(command, status));
        yardsticks.push_back(told ? RunTellingChild(yardstick) : RunChild(yardstick));
    }
    PrintTimes(runs, yardsticks, &ChildRun::wallSeconds);
    PrintTimes(runs, yardsticks, &ChildRun::cpuSeconds);
    std::puts("");
    return EXIT_SUCCESS;
}
