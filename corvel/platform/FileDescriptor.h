#pragma once

#include <string>
#include <string_view>

namespace Corvel::Platform {

/// The owner of one file descriptor, or of none.
///
/// Failures: system calls interrupted by a signal are repeated; every other failure is returned as
///           its errno value, 0 being success.
/// Lifetime: an open descriptor is closed by the destructor.
class FileDescriptor final {
public:
    FileDescriptor() noexcept = default;
    explicit FileDescriptor(int descriptor) noexcept : _descriptor(descriptor) {}
    FileDescriptor(FileDescriptor&& other) noexcept : _descriptor(other.Release()) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept;
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor() { Close(); }

    /// @return the descriptor, -1 when there is none.
    int Get() const noexcept { return _descriptor; }
    bool IsOpen() const noexcept { return _descriptor >= 0; }
    /// Gives the descriptor away.
    int Release() noexcept;
    void Close() noexcept;

    /// Writes the whole text. A reader that has gone away is EPIPE; the SIGPIPE that comes with it
    /// is taken from this thread before it can do anything.
    int WriteAll(std::string_view text) const noexcept;
    /// Appends everything up to end of file; what was read before a failure is kept.
    int ReadToEnd(std::string& text) const;

private:
    int _descriptor = -1;
};

}  // namespace Corvel::Platform
