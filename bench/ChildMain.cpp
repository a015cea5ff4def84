// The whole protocol of a child process beside bare posix_spawn of the same command line, in turn.
//
//   bench_child RUNS MEGABYTES
//
// MEGABYTES are in use meanwhile: what fork() would have to copy the page tables of.
//
// One line, like that of bench_pair.
#include <sys/resource.h>

#include <chrono>
#include <cstdlib>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

#include "bench/ChildRun.h"
#include "bench/PairTimes.h"
#include <corvel/corvel.h>

namespace Corvel::Bench {
namespace {

constexpr const char* kCommand = "printf '<output><string>done</string></output>'";
constexpr std::string_view kPrinted = "<output><string>done</string></output>";

double ProcessorSeconds(int who) {
    rusage usage = {};
    ::getrusage(who, &usage);
    return static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
           static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) * 1e-6;
}

/// Our own processor time and that of the children.
double ProcessorSeconds() {
    return ProcessorSeconds(RUSAGE_SELF) + ProcessorSeconds(RUSAGE_CHILDREN);
}

/// Ends the program when the work prints something else than it should.
template <typename Work>
ChildRun TimeOf(const Work& work) {
    const double processorBefore = ProcessorSeconds();
    const auto before = std::chrono::steady_clock::now();
    const std::string output = work();
    const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - before;
    const double processor = ProcessorSeconds() - processorBefore;
    if (output != kPrinted) {
        std::cerr << "the command printed something else: " << output << '\n';
        std::exit(EXIT_FAILURE);
    }
    return {wall.count(), processor};
}

std::string ShellCmd() {
    std::string output;
    AutoCli::AutoCli_ShellCmd(kCommand, output, "");
    return output;
}

PairTimes Measure(int runs) {
    PairTimes pairs;
    for (int i = 0; i < runs; ++i) {
        pairs.runs.push_back(TimeOf(ShellCmd));
        pairs.yardsticks.push_back(TimeOf([] { return SpawnShell(kCommand); }));
    }
    return pairs;
}

}  // namespace
}  // namespace Corvel::Bench

int main(int argc, char** argv) {
    const int runs = argc == 3 ? std::atoi(argv[1]) : 0;
    if (runs < 1) {
        std::cerr << "usage: bench_child RUNS MEGABYTES\n";
        return EXIT_FAILURE;
    }
    // Memory that is really there: every page is written to.
    const std::vector<char> ballast(std::strtoul(argv[2], nullptr, 10) * 1'000'000, 'x');
    Corvel::Bench::Measure(1);  // not counted
    const auto pairs = Corvel::Bench::Measure(runs);
    pairs.Print();
    return ballast.empty() || ballast.back() == 'x' ? EXIT_SUCCESS : EXIT_FAILURE;
}
