#include "bench/PairTimes.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <utility>

namespace Corvel::Bench {

namespace {

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

void PairTimes::Print() const {
    PrintTimes(runs, yardsticks, &ChildRun::wallSeconds);
    PrintTimes(runs, yardsticks, &ChildRun::cpuSeconds);
    std::puts("");
}

}  // namespace Corvel::Bench
