#include "bench/OneRun.h"

#include <sys/stat.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <iostream>

namespace Corvel::Bench {

namespace {

double ProcessorSeconds() {
    timespec time = {};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

}  // namespace

std::string ReadWholeFile(const char* path) {
    struct stat status = {};
    std::ifstream file(path, std::ios::binary);
    if (!file || ::stat(path, &status) != 0) {
        std::cerr << "cannot read " << path << '\n';
        std::exit(EXIT_FAILURE);
    }
    // Made at its full size: a text that grows would count in the peak of the memory.
    std::string text(static_cast<std::size_t>(status.st_size), '\0');
    file.read(text.data(), status.st_size);
    return text;
}

void TellTimeOf(const std::function<bool()>& work) {
    const double processorBefore = ProcessorSeconds();
    const auto before = std::chrono::steady_clock::now();
    const bool done = work();
    const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - before;
    const double processor = ProcessorSeconds() - processorBefore;
    if (!done) {
        std::fputs("the work to be timed failed\n", stderr);
        std::exit(EXIT_FAILURE);
    }
    std::printf("%.6f %.6f\n", wall.count(), processor);
}

}  // namespace Corvel::Bench
