#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

/// What libFuzzer, and the program that replays files, call for each input.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

/// Ends the process with a message where a target's promise does not hold: that is a finding.
inline void Promise(bool holds, const char* promise) {
    if (!holds) {
        std::fprintf(stderr, "Promise broken: %s\n", promise);
        std::abort();
    }
}
