#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace Corvel::Scale {

/// How large things are in this run: as CORVEL_SCALE says.
struct Sizes {
    /// Of lists, trees and everything else that is counted.
    std::size_t items;
    /// Of values within values.
    std::size_t depth;
    /// The same, for what indents each level: its text grows with the square of the depth.
    std::size_t indentedDepth;
    /// Of what a child prints.
    std::size_t bytes;
    /// Of one line.
    std::size_t line;
    /// Of one text: a name, an option, a header, a template.
    std::size_t text;
    std::size_t descriptors;
    std::size_t inputLines;
    /// How much more an item may take among ten times as many; a square takes 10 times as much.
    double linearGrowth;
    double orderedGrowth;
    /// The same for the kernel's part: a page costs more where gigabytes of them are touched.
    double kernelGrowth;
    /// What a peak may be off, whatever it is of.
    double megabytesOfNoise;
};
const Sizes& ChosenSizes();

/// What one process took, and how it ended.
struct Outcome {
    /// As wait() reports it.
    int status = -1;
    /// Of the processor in its own code and in the kernel, its children included.
    double userSeconds = 0;
    double kernelSeconds = 0;
    double peakMegabytes = 0;
    /// The first 4096 bytes of what it wrote to standard error, and how much that was.
    std::string errors = {};
    std::size_t errorBytes = 0;
    std::size_t errorLines = 0;
    std::size_t outputLines = 0;
};

/// Runs a program with a stack of 8 MB, or another. Its output is counted, and a program that takes
/// more than 20 minutes of the processor is ended.
constexpr std::size_t kStack = std::size_t{8} << 20;
Outcome Measure(const std::vector<std::string>& arguments, std::size_t stack = kStack);

/// What is known of how a case may grow.
enum class Growth {
    Linear,
    /// Sorted by name, which takes n log n, or in more memory than any cache holds.
    Ordered,
    /// Nothing is said: it is a square by its nature.
    Free,
};

/// Runs what `measure` does with a size and with a tenth of it, and expects that an item takes no
/// more time and memory in the large run than the growth allows. Where it seems to take more, the
/// best of several runs counts. Tells both in a line of the table.
void ExpectGrowth(const std::string& name,
                  std::size_t size,
                  Growth growth,
                  const std::function<Outcome(std::size_t)>& measure);

/// A line of the table for what was done once.
void Tell(const std::string& name,
          std::size_t size,
          const Outcome& outcome,
          const std::string& end);

}  // namespace Corvel::Scale
