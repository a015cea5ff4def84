// The whole protocol of a child process beside bare posix_spawn of the same command line. The
// argument is the memory in use, in MB: what fork() would have to copy the page tables of.
#include <string>
#include <string_view>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/ChildRun.h"
#include <corvel/corvel.h>

namespace Corvel::Bench {
namespace {

constexpr const char* kCommand = "printf '<output><string>done</string></output>'";
constexpr std::string_view kPrinted = "<output><string>done</string></output>";

void Check(benchmark::State& state, const std::string& output) {
    if (output != kPrinted) {
        state.SkipWithError("the command printed something else");
    }
}

/// Memory that is really there: every page has been written to.
std::vector<char> Ballast(const benchmark::State& state) {
    return std::vector<char>(static_cast<std::size_t>(state.range(0)) * 1'000'000, 'x');
}

void ShellCmd(benchmark::State& state) {
    std::vector<char> ballast = Ballast(state);
    benchmark::DoNotOptimize(ballast.data());
    std::string output;
    while (state.KeepRunning()) {
        output.clear();
        AutoCli::AutoCli_ShellCmd(kCommand, output, "");
    }
    Check(state, output);
}

void PosixSpawn(benchmark::State& state) {
    std::vector<char> ballast = Ballast(state);
    benchmark::DoNotOptimize(ballast.data());
    std::string output;
    while (state.KeepRunning()) {
        output = SpawnShell(kCommand);
    }
    Check(state, output);
}

BENCHMARK(ShellCmd)->Name("child")->Arg(0)->Arg(500)->UseRealTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(PosixSpawn)
    ->Name("child-posixspawn")
    ->Arg(0)
    ->Arg(500)
    ->UseRealTime()
    ->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace Corvel::Bench

BENCHMARK_MAIN();
