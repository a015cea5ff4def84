#include <sys/resource.h>

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <tuple>

#include <gtest/gtest.h>

#include "tests/faults/AllocationReportFile.h"
#include "tests/faults/Scenarios.h"

namespace Corvel::Testing {
namespace {

/// How many allocations fail: one, or that one and all behind it.
enum class Failing { Once, FromThenOn };

constexpr const char* kPreloaded = "LD_PRELOAD=" CORVEL_FAULTY_ALLOCATOR ":" CORVEL_LEAK_SEARCH;
constexpr int kStatusOfALeak = 99;

/// The C++ runtime's reserve for the making of exceptions is the first allocation. Where neither it
/// nor any other can be had, what fails cannot be told.
constexpr std::uint64_t kReserveForExceptions = 1;

double ChildrensProcessorSeconds() {
    rusage usage = {};
    getrusage(RUSAGE_CHILDREN, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// How many allocations of a scenario are tried in each way; those tried lie evenly among all.
std::uint64_t MostTries() {
    const char* const text = std::getenv("CORVEL_FAULTS_ALLOCATIONS");
    return text == nullptr ? UINT64_MAX : std::strtoull(text, nullptr, 10);
}

std::uint64_t StrideFor(std::uint64_t count) {
    const std::uint64_t most = std::max<std::uint64_t>(MostTries(), 1);
    return most >= count ? 1 : (count + most - 1) / most;
}

/// The ending where the loader has no memory for all its words: it says which file does not exist, and
/// that it does not, in the message that stands around them.
Ending WithBareLoaderReason(Ending ending) {
    const std::string reason = "cannot open shared object file";
    std::string& text = ending.err;
    const std::size_t at = text.find(": " + reason);
    if (at != std::string::npos) {
        const std::size_t begin = text.rfind(' ', at - 1) + 1;
        text.replace(begin, text.find('\n', at) - begin, reason);
    }
    return ending;
}

/// Memory that nobody can reach in the end gives a status of its own.
/// @param number  of the allocation that fails; with 0 none does.
Ending RunFaulty(const Scenario& scenario,
                 Failing failing,
                 std::uint64_t number,
                 AllocationReportFile& report,
                 const std::string& further = "CORVEL=") {
    report.Clear();
    const std::string variable =
        failing == Failing::Once ? "CORVEL_ALLOCATION_FAILS=" : "CORVEL_ALLOCATIONS_FAIL=";
    return RunScenario(scenario,
                       {.environment = {kPreloaded,
                                        "LSAN_OPTIONS=exitcode=" + std::to_string(kStatusOfALeak),
                                        "CORVEL_ALLOCATION_REPORT=" + report.Path(),
                                        variable + std::to_string(number),
                                        further}});
}

class AllocationFaults : public testing::TestWithParam<std::tuple<Scenario, Failing>> {
protected:
    const Scenario& TheScenario() const { return std::get<0>(GetParam()); }
    Failing HowOften() const { return std::get<1>(GetParam()); }

    Ending RunWithFault(std::uint64_t number) {
        return RunFaulty(TheScenario(), HowOften(), number, _report);
    }

    /// What is wrong with how it ended, or with what it left.
    /// @param descriptors  how many are left when nothing fails.
    std::string ComplaintAbout(const Ending& ending, std::uint32_t descriptors) const {
        std::string complaint = Complaint(TheScenario(), _whole, ending);
        if (!complaint.empty() && ending != WithBareLoaderReason(_whole)) {
            return complaint;
        }
        if (ending.err.find("plugin") != std::string::npos &&
            _whole.err.find("plugin") == std::string::npos) {
            return "a plug-in is blamed for want of memory";
        }
        if (ending.err.find(" error : ") != std::string::npos) {
            return "libxml2 writes to standard error";
        }
        const AllocationReport& report = _report.Get();
        if (report.ended != 0 && report.descriptors != descriptors) {
            return "a descriptor is left";
        }
        return report.hasChild == 0 ? "" : "a child is left";
    }

    AllocationReportFile _report;
    const Ending _whole = RunScenario(TheScenario());
};

TEST_P(AllocationFaults, GiveTheResultOrAnErrorText) {
    ASSERT_EQ(RunWithFault(0), _whole);
    const std::uint64_t count = _report.Get().count;
    const std::uint32_t descriptors = _report.Get().descriptors;
    ASSERT_GT(count, 100U);

    const double start = ChildrensProcessorSeconds();
    const std::uint64_t stride = StrideFor(count);
    std::uint64_t tries = 0;
    std::uint64_t faults = 0;
    std::uint64_t same = 0;
    std::uint64_t told = 0;
    for (std::uint64_t number = HowOften() == Failing::Once ? 1 : kReserveForExceptions + 1;
         number <= count;
         number += stride) {
        const Ending ending = RunWithFault(number);
        ++tries;
        faults += _report.Get().failed != 0 ? 1U : 0U;
        same += ending == _whole ? 1U : 0U;
        told += _report.Get().ended != 0 ? 1U : 0U;
        const std::string complaint = ComplaintAbout(ending, descriptors);
        EXPECT_EQ(complaint, "") << "allocation " << number << " of " << count << "\n" << ending;
    }
    // Without memory for it, the C library calls no destructors in the end.
    EXPECT_GE(told, tries / 2);
    // The output of a child may come in more pieces in one run than in another.
    EXPECT_GE(faults + 20, tries);
    std::printf(
        "%s: %llu allocations, every %llu. tried, %llu faults: %llu with the result, %llu "
        "with an error text; %.1f s\n",
        TheScenario().name.c_str(),
        static_cast<unsigned long long>(count),
        static_cast<unsigned long long>(stride),
        static_cast<unsigned long long>(faults),
        static_cast<unsigned long long>(same),
        static_cast<unsigned long long>(tries - same),
        ChildrensProcessorSeconds() - start);
}

std::string NameOf(const Scenario& scenario) {
    std::string name = scenario.name;
    std::replace_if(
        name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
    return name;
}

class WithoutFaults : public testing::TestWithParam<Scenario> {};

TEST_P(WithoutFaults, NothingIsLeaked) {
    AllocationReportFile report;
    EXPECT_EQ(RunFaulty(GetParam(), Failing::Once, 0, report), RunScenario(GetParam()));
}

/// The library's initialisers come right behind the C++ runtime's reserve.
TEST(AllocationFaultsWhileLoading, ValuesThatCannotBeMadeThenAreMadeLater) {
    AllocationReportFile report;
    const Scenario scenario = {"help", {"quorcli", "command", "list", "--help"}};
    const Ending whole = RunScenario(scenario);
    for (std::uint64_t number = 1; number < 20; ++number) {
        EXPECT_EQ(RunFaulty(scenario, Failing::Once, number, report), whole) << number;
        EXPECT_EQ(report.Get().failed, 1U) << number;
    }
}

TEST(AllocationFaultsBesideALeak, ItIsFound) {
    AllocationReportFile report;
    const Scenario scenario = {"help", {"quorcli", "command", "list", "--help"}};
    const Ending ending =
        RunFaulty(scenario, Failing::Once, 0, report, "CORVEL_ALLOCATION_LEAKS=yes");
    EXPECT_EQ(ending.status, kStatusOfALeak) << ending;
    EXPECT_NE(Complaint(scenario, RunScenario(scenario), ending), "");
}

INSTANTIATE_TEST_SUITE_P(Quorcli,
                         AllocationFaults,
                         testing::Combine(testing::ValuesIn(Scenarios()),
                                          testing::Values(Failing::Once, Failing::FromThenOn)),
                         [](const auto& test) {
                             const bool isOnce = std::get<1>(test.param) == Failing::Once;
                             return NameOf(std::get<0>(test.param)) +
                                    (isOnce ? "_once" : "_from_then_on");
                         });

INSTANTIATE_TEST_SUITE_P(Quorcli,
                         WithoutFaults,
                         testing::ValuesIn(Scenarios()),
                         [](const auto& test) { return NameOf(test.param); });

}  // namespace
}  // namespace Corvel::Testing
