#include <algorithm>
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/scale/Measuring.h"

namespace Corvel::Scale {
namespace {

/// One case of the worker.
struct LibraryCase {
    const char* name;
    Growth growth = Growth::Linear;
};

void PrintTo(const LibraryCase& one, std::ostream* stream) {
    *stream << one.name;
}

std::string NameOf(const testing::TestParamInfo<LibraryCase>& info) {
    std::string name;
    bool isFirst = true;
    for (const char* at = info.param.name; *at != '\0'; ++at) {
        if (*at == '-') {
            isFirst = true;
        } else {
            name += isFirst ? static_cast<char>(*at - 'a' + 'A') : *at;
            isFirst = false;
        }
    }
    return name;
}

Outcome Work(const char* name, std::size_t size, std::size_t stack = kStack) {
    Outcome outcome = Measure({CORVEL_SCALE_WORKER, name, std::to_string(size)}, stack);
    EXPECT_EQ(outcome.status, 0) << name << ' ' << size << ": " << outcome.errors;
    return outcome;
}

class Items : public testing::TestWithParam<LibraryCase> {};

TEST_P(Items, EachTakesTheSameAmongMany) {
    const auto [name, growth] = GetParam();
    ExpectGrowth(name, ChosenSizes().items, growth, [&](std::size_t size) {
        return Work(GetParam().name, size);
    });
}

INSTANTIATE_TEST_SUITE_P(Formats,
                         Items,
                         testing::ValuesIn(std::vector<LibraryCase>{
                             {"format-simple"},
                             {"format-simple-styled"},
                             {"format-table"},
                             {"format-table-paths"},
                             {"format-table-wrapped"},
                             {"format-xml"},
                             {"format-json"},
                             {"format-python"},
                             {"format-text"},
                             {"format-clihelp"},
                             {"format-commandhelp"},
                         }),
                         NameOf);

INSTANTIATE_TEST_SUITE_P(Wide,
                         Items,
                         testing::ValuesIn(std::vector<LibraryCase>{
                             {"fields", Growth::Ordered},
                             {"fields-formatted", Growth::Ordered},
                             {"columns", Growth::Ordered},
                             {"scalars"},
                             {"nodes", Growth::Ordered},
                             {"values", Growth::Ordered},
                             {"enumeration", Growth::Ordered},
                             {"tokens", Growth::Ordered},
                             {"errors"},
                             {"words"},
                             {"format-parameters", Growth::Ordered},
                         }),
                         NameOf);

class Depth : public testing::TestWithParam<LibraryCase> {};

TEST_P(Depth, EachLevelTakesTheSameOnASmallStack) {
    const auto [name, growth] = GetParam();
    ExpectGrowth(name, ChosenSizes().depth, growth, [&](std::size_t size) {
        return Work(GetParam().name, size);
    });
}

INSTANTIATE_TEST_SUITE_P(Deep,
                         Depth,
                         testing::ValuesIn(std::vector<LibraryCase>{
                             {"deep-compare-structs"},
                             {"deep-compare-lists"},
                             {"deep-definitions"},
                             {"deep-text"},
                             {"deep-table"},
                             {"deep-python"},
                             {"deep-nodes"},
                             {"deep-braces"},
                             {"deep-shell-nesting"},
                             {"deep-namespaces"},
                             {"deep-namespaces-upwards"},
                             {"deep-command-line"},
                         }),
                         NameOf);

class IndentedDepth : public testing::TestWithParam<LibraryCase> {};

/// The stack is as much smaller than 8 MB as the depth is than 100,000: a level may take 84 bytes of
/// it, which no call could do with.
TEST_P(IndentedDepth, IsPrintedOnASmallStack) {
    const char* const name = GetParam().name;
    const std::size_t depth = ChosenSizes().indentedDepth;
    const std::size_t stack = std::max(kStack / 16, kStack * depth / 100'000);
    Tell(name, depth, Work(name, depth, stack), "complete");
}

INSTANTIATE_TEST_SUITE_P(
    Deep,
    IndentedDepth,
    testing::ValuesIn(std::vector<LibraryCase>{{"deep-simple"}, {"deep-xml"}, {"deep-json"}}),
    NameOf);

class Texts : public testing::TestWithParam<LibraryCase> {};

TEST_P(Texts, EachByteTakesTheSameInALongOne) {
    const auto [name, growth] = GetParam();
    ExpectGrowth(name, ChosenSizes().text, growth, [&](std::size_t size) {
        return Work(GetParam().name, size);
    });
}

INSTANTIATE_TEST_SUITE_P(Long,
                         Texts,
                         testing::ValuesIn(std::vector<LibraryCase>{
                             {"text-names"},
                             {"text-values"},
                             {"text-wrapping"},
                             {"text-patterns"},
                             {"text-deep-pattern"},
                         }),
                         NameOf);

/// Where many parameters are added to one command in no order, each moves those behind it: a move
/// takes a nanosecond, so that it is not worth a tree.
TEST(Parameters, AHundredThousandOfOneCommandAreFew) {
    const std::size_t count = std::min<std::size_t>(ChosenSizes().items, 100'000);
    ExpectGrowth("parameters", count, Growth::Free, [](std::size_t size) {
        return Work("parameters", size);
    });
}

}  // namespace
}  // namespace Corvel::Scale
