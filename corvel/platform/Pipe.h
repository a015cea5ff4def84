#pragma once

#include "corvel/platform/FileDescriptor.h"

namespace Corvel::Platform {

/// Both ends of a pipe. They are close-on-exec and never 0, 1 or 2, so that nothing that goes by
/// the standard descriptors can hit them in a process that was started without these.
struct Pipe {
    FileDescriptor readEnd;
    FileDescriptor writeEnd;

    /// @return 0, or the errno value of the failure; the pipe is then left as it was.
    int Open() noexcept;
};

}  // namespace Corvel::Platform
