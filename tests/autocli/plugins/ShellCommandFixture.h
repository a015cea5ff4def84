#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace Corvel::Testing {

constexpr std::size_t kMegabyte = 1 << 20;

/// Every test must leave no hook, no descriptor and no child behind.
class ShellCommand : public testing::Test {
public:
    /// The descriptors that were open when the test began.
    static const std::set<int>& DescriptorsBefore() { return _sDescriptorsBefore; }

protected:
    void SetUp() override;
    void TearDown() override;

    static std::string OutputOf(const std::string& command, const std::string& input = {});
    static std::string FailureOf(const std::string& command, const std::string& input = {});

    /// From now on every finished command is heard of, with its wait status, and those before are
    /// forgotten.
    static void Listen();
    static const std::vector<std::pair<std::string, int>>& Heard() { return _sHeard; }

private:
    static std::set<int> _sDescriptorsBefore;
    static std::vector<std::pair<std::string, int>> _sHeard;
};

}  // namespace Corvel::Testing
