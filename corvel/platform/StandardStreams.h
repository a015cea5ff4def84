#pragma once

#include <string>

namespace Corvel::Platform {

/// Sends everything that was written to standard output on its way. When that fails, or writing
/// failed before, it tells so once on standard error, until somebody clears the streams (std::cout
/// and the C library's stdout, which is below it):
///   "Unable to write to standard output: " + the system's text
///
/// Threads: any may call it.
/// @return whether everything written so far has gone out.
bool FlushStandardOutput();

/// Writes lines to standard error, behind everything that was written to standard output before.
///
/// @param lines  with their line ends.
void WriteErrorLines(const std::string& lines);

}  // namespace Corvel::Platform
