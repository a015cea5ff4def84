#include "tests/scale/Measuring.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <malloc.h>
#include <sstream>
#include <string_view>
#include <system_error>

#include <gtest/gtest.h>

#include "tests/support/ProcessRunner.h"
#include "tests/support/TemporaryDirectory.h"

namespace Corvel::Scale {

namespace {

// For the sanitizers, which keep what is freed, up to a limit. Their own time does not grow evenly: only
// a square, which gives 10, is certain to be ours.
constexpr Sizes kSmall = {.items = 10'000,
                          .depth = 100'000,
                          .indentedDepth = 1'000,
                          .bytes = 4'000'000,
                          .line = 1'000'000,
                          .text = 1'000'000,
                          .descriptors = 100,
                          .inputLines = 2'000,
                          .linearGrowth = 7,
                          .orderedGrowth = 7,
                          .kernelGrowth = 7,
                          .megabytesOfNoise = 512};
constexpr Sizes kUsual = {.items = 100'000,
                          .depth = 100'000,
                          .indentedDepth = 3'000,
                          .bytes = 64'000'000,
                          .line = 10'000'000,
                          .text = 1'000'000,
                          .descriptors = 2'000,
                          .inputLines = 20'000,
                          .linearGrowth = 2,
                          .orderedGrowth = 3,
                          .kernelGrowth = 4,
                          .megabytesOfNoise = 8};
constexpr Sizes kFull = {.items = 1'000'000,
                         .depth = 100'000,
                         .indentedDepth = 100'000,
                         .bytes = 1'000'000'000,
                         .line = 100'000'000,
                         .text = 1'000'000,
                         .descriptors = 10'000,
                         .inputLines = 1'000'000,
                         .linearGrowth = 1.2,
                         .orderedGrowth = 2,
                         .kernelGrowth = 4,
                         .megabytesOfNoise = 8};

/// What a time may be off, whatever it is of.
constexpr double kSecondsOfNoise = 0.015;

[[noreturn]] void BecomeProgram(const std::vector<std::string>& arguments,
                                std::size_t stack,
                                const std::string& output,
                                const std::string& errors) {
    std::vector<char*> words;
    words.reserve(arguments.size() + 1);
    for (const std::string& argument : arguments) {
        words.push_back(const_cast<char*>(argument.c_str()));
    }
    words.push_back(nullptr);
    std::vector<std::string> variables = Testing::FixedEnvironment();
    std::vector<char*> environment;
    environment.reserve(variables.size() + 1);
    for (std::string& variable : variables) {
        environment.push_back(variable.data());
    }
    environment.push_back(nullptr);
    const rlimit stackLimit = {stack, stack};
    const rlimit timeLimit = {1200, 1200};
    const int files[] = {open("/dev/null", O_RDONLY | O_CLOEXEC),
                         creat(output.c_str(), 0600),   // NOLINT(android-cloexec-creat): inherited
                         creat(errors.c_str(), 0600)};  // NOLINT(android-cloexec-creat): inherited
    for (int descriptor = 0; descriptor < 3; ++descriptor) {
        dup2(files[descriptor], descriptor);
    }
    setrlimit(RLIMIT_STACK, &stackLimit);
    setrlimit(RLIMIT_CPU, &timeLimit);
    execve(words.front(), words.data(), environment.data());
    _exit(127);
}

/// Reads a file without keeping it.
void CountLines(const std::string& path,
                std::size_t& lines,
                std::size_t& bytes,
                std::string& head) {
    std::ifstream file(path);
    std::vector<char> piece(std::size_t{1} << 20);
    while (file.read(piece.data(), static_cast<std::streamsize>(piece.size())), file.gcount() > 0) {
        const std::string_view text(piece.data(), static_cast<std::size_t>(file.gcount()));
        lines += static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
        bytes += text.size();
        head += text.substr(0, 4096 - std::min<std::size_t>(head.size(), 4096));
    }
}

double Seconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

/// The least that several runs took: what else the machine does only adds.
class Best {
public:
    Best(const std::function<Outcome(std::size_t)>& measure, std::size_t size)
        : _measure(measure), _size(size), _outcome(measure(size)) {}

    const Outcome& Get() const { return _outcome; }
    void RunAgain() {
        const Outcome next = _measure(_size);
        _outcome.userSeconds = std::min(_outcome.userSeconds, next.userSeconds);
        _outcome.kernelSeconds = std::min(_outcome.kernelSeconds, next.kernelSeconds);
        _outcome.peakMegabytes = std::min(_outcome.peakMegabytes, next.peakMegabytes);
    }

private:
    const std::function<Outcome(std::size_t)>& _measure;
    const std::size_t _size;
    Outcome _outcome;
};

constexpr double kAnyGrowth = 1e9;

double AllowedGrowth(Growth growth) {
    if (growth == Growth::Free) {
        return kAnyGrowth;
    }
    return growth == Growth::Linear ? ChosenSizes().linearGrowth : ChosenSizes().orderedGrowth;
}

/// How much more one item takes among ten times as many.
struct GrowthFound {
    GrowthFound(const Outcome& start, const Outcome& small, const Outcome& large)
        : time(Of(start.userSeconds, small.userSeconds, large.userSeconds, kSecondsOfNoise)),
          kernelTime(
              Of(start.kernelSeconds, small.kernelSeconds, large.kernelSeconds, kSecondsOfNoise)),
          memory(Of(start.peakMegabytes,
                    small.peakMegabytes,
                    large.peakMegabytes,
                    ChosenSizes().megabytesOfNoise)) {}

    bool IsAtMost(double allowed, double allowedInKernel) const {
        return time <= allowed && kernelTime <= allowedInKernel && memory <= allowed;
    }

    double time;
    double kernelTime;
    double memory;

private:
    static double Of(double start, double small, double large, double noise) {
        return (large - start) / 10 / std::max(small - start, noise);
    }
};

std::string Rounded(double number, int digits) {
    std::ostringstream text;
    text.setf(std::ios::fixed);
    text.precision(digits);
    text << number;
    return text.str();
}

void TellRow(const std::string& name,
             std::size_t size,
             const Outcome& outcome,
             const std::string& growth,
             const std::string& end) {
    std::cout << "| " << name << " | " << size << " | "
              << Rounded(outcome.userSeconds + outcome.kernelSeconds, 3) << " | "
              << Rounded(outcome.peakMegabytes, 0) << " | " << growth << " | " << end << " |\n";
}

}  // namespace

const Sizes& ChosenSizes() {
    const char* const chosen = std::getenv("CORVEL_SCALE");
    const std::string_view name = chosen == nullptr ? "" : chosen;
    return name == "full" ? kFull : name == "small" ? kSmall : kUsual;
}

Outcome Measure(const std::vector<std::string>& arguments, std::size_t stack) {
    const Testing::TemporaryDirectory directory;
    const std::string output = directory.File("out");
    const std::string errors = directory.File("err");
    malloc_trim(0);  // the peak of the child counts from what we have now
    const pid_t child = fork();
    if (child == -1) {
        throw std::system_error(errno, std::generic_category(), "fork");
    }
    if (child == 0) {
        BecomeProgram(arguments, stack, output, errors);
    }
    Outcome outcome;
    rusage usage = {};
    while (wait4(child, &outcome.status, 0, &usage) == -1 && errno == EINTR) {
    }
    outcome.userSeconds = Seconds(usage.ru_utime);
    outcome.kernelSeconds = Seconds(usage.ru_stime);
    outcome.peakMegabytes = static_cast<double>(usage.ru_maxrss) / 1024;
    std::size_t ignoredBytes = 0;
    std::string ignored;
    CountLines(output, outcome.outputLines, ignoredBytes, ignored);
    CountLines(errors, outcome.errorLines, outcome.errorBytes, outcome.errors);
    return outcome;
}

void ExpectGrowth(const std::string& name,
                  std::size_t size,
                  Growth growth,
                  const std::function<Outcome(std::size_t)>& measure) {
    constexpr std::size_t kFewest = 10;  // what hardly counts, but the start
    constexpr int kMostAttempts = 6;
    const double allowed = AllowedGrowth(growth);
    const double allowedInKernel = growth == Growth::Free ? kAnyGrowth : ChosenSizes().kernelGrowth;
    const Best start(measure, kFewest);
    Best small(measure, size / 10);
    Best large(measure, size);
    GrowthFound found(start.Get(), small.Get(), large.Get());
    for (int i = 1; i < kMostAttempts && !found.IsAtMost(allowed, allowedInKernel); ++i) {
        small.RunAgain();
        large.RunAgain();
        found = GrowthFound(start.Get(), small.Get(), large.Get());
    }
    TellRow(name,
            size,
            large.Get(),
            Rounded(found.time, 2) + ", " + Rounded(found.kernelTime, 2) + ", " +
                Rounded(found.memory, 2),
            "complete");
    EXPECT_LE(found.time, allowed) << "seconds for each item of " << name;
    EXPECT_LE(found.kernelTime, allowedInKernel) << "seconds of the kernel for each of " << name;
    EXPECT_LE(found.memory, allowed) << "memory for each item of " << name;
}

void Tell(const std::string& name,
          std::size_t size,
          const Outcome& outcome,
          const std::string& end) {
    TellRow(name, size, outcome, "", end);
}

}  // namespace Corvel::Scale
