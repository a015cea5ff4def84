#pragma once

#include <filesystem>
#include <iosfwd>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/ProcessRunner.h"

namespace Corvel::Testing {

/// One recorded run of a command line: a folder <area>/<case> with
///
///   cmd       shell text, run in a fresh folder, in which "data" is the data of all cases
///   stdin     its standard input
///   env       more variables, NAME=value, one a line; $GOLDEN_CASE is the case's folder
///   out, err  what standard output and standard error must be, to the byte
///   status    the exit status, on a line
///
/// Only cmd must be there: the others count as empty, status as 0.
class GoldenCase {
public:
    explicit GoldenCase(std::filesystem::path folder);

    /// "<area>_<case>", in letters, digits and underscores.
    std::string TestName() const;

    /// @param programs  the folder in which quorcli is; it stands first in PATH.
    Result Run(const std::filesystem::path& programs) const;

    Result Expected() const;
    /// Whether the run was as recorded; if not, with all that differs.
    testing::AssertionResult Check(const Result& actual) const;
    /// Records the run as the right one. Files that would say nothing are removed.
    void Accept(const Result& actual) const;

private:
    /// For messages of the test framework.
    friend void PrintTo(const GoldenCase& goldenCase, std::ostream* stream);

    std::filesystem::path _folder;
};

/// All cases below a folder, by name.
std::vector<GoldenCase> FindGoldenCases(const std::filesystem::path& root);

}  // namespace Corvel::Testing
