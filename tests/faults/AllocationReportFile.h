#pragma once

#include <string>

#include "tests/faults/AllocationReport.h"
#include "tests/support/TemporaryDirectory.h"

namespace Corvel::Testing {

/// A file for the report of a program that runs.
class AllocationReportFile {
public:
    AllocationReportFile();
    AllocationReportFile(const AllocationReportFile&) = delete;
    AllocationReportFile& operator=(const AllocationReportFile&) = delete;
    ~AllocationReportFile();

    const std::string& Path() const { return _path; }
    /// What was told last.
    const AllocationReport& Get() const { return *_report; }
    /// Before the next program runs.
    void Clear() { *_report = {}; }

private:
    TemporaryDirectory _folder;
    std::string _path = _folder.Write("report", std::string(sizeof(AllocationReport), '\0'));
    AllocationReport* _report;
};

}  // namespace Corvel::Testing
