#include "tests/faults/AllocationReportFile.h"

#include <errno.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <system_error>

namespace Corvel::Testing {

namespace {

AllocationReport* Map(const std::string& path) {
    const int file = open(path.c_str(), O_RDWR | O_CLOEXEC);
    void* const memory =
        mmap(nullptr, sizeof(AllocationReport), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    if (memory == MAP_FAILED) {
        throw std::system_error(errno, std::generic_category(), "mmap " + path);
    }
    close(file);
    return static_cast<AllocationReport*>(memory);
}

}  // namespace

AllocationReportFile::AllocationReportFile() : _report(Map(_path)) {}

AllocationReportFile::~AllocationReportFile() {
    munmap(_report, sizeof(AllocationReport));
}

}  // namespace Corvel::Testing
