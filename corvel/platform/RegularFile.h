#pragma once

#include <cstddef>
#include <string>

#include "corvel/platform/FileDescriptor.h"

namespace Corvel::Platform {

/// A regular file, opened for reading; children do not inherit it.
///
/// Failures: one that cannot be opened, or is a directory, a FIFO or a device, is not open. Opening
///           never waits, whatever the path names.
class RegularFile final {
public:
    explicit RegularFile(const std::string& path);

    bool IsOpen() const { return _descriptor.IsOpen(); }
    /// @return why it is not open, as an errno value: EISDIR for a directory, EINVAL for anything else
    ///         that is no regular file.
    int Error() const { return _error; }
    /// How many bytes the file had when it was opened.
    long Size() const { return _size; }
    /// Reads on from where the last reading ended.
    /// @return how many bytes were read, 0 at the end of the file, -1 on failure.
    long Read(void* buffer, std::size_t size) const;
    /// Fills the buffer with what stands at that offset.
    /// @return how many bytes were read, fewer than asked for only at the end of the file; -1 on
    ///         failure.
    long ReadAt(long offset, void* buffer, std::size_t size) const;

private:
    FileDescriptor _descriptor;
    long _size = 0;
    int _error = 0;
};

}  // namespace Corvel::Platform
