#pragma once

#include "corvel/platform/Export.h"

namespace Corvel::AutoCli {

/// Ends the process by abort() after writing "panic: " and the printf-style message, cut to 255
/// bytes and without a newline, to the standard error stream. For states in which nothing else can
/// be trusted; every ordinary failure is an exception or an error message of a call.
[[noreturn]] CORVEL_EXPORT __attribute__((format(printf, 1, 2))) void Panic(const char* format,
                                                                            ...);

}  // namespace Corvel::AutoCli
