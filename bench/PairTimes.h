#pragma once

#include <vector>

#include "bench/ChildRun.h"

namespace Corvel::Bench {

/// Runs of a command and of its yardstick, in turn: the runs of one index were neighbours in time.
struct PairTimes {
    std::vector<ChildRun> runs;
    std::vector<ChildRun> yardsticks;

    /// Prints one line: medians of the wall time of both in ms and the median of the ratios of the
    /// pairs, then the same three of their processor time.
    void Print() const;
};

}  // namespace Corvel::Bench
