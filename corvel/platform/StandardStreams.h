#pragma once

#include <iosfwd>
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

/// Reads one line as std::getline does. Where a signal interrupts the reading of standard input it goes
/// on, which streams of files do by themselves.
///
/// @return whether there was a line.
bool ReadLine(std::istream& stream, std::string& line);

/// @return why standard input broke off, as an errno value; 0 when it did not: it has more, or has
///         ended. To be asked right after the reading.
int StandardInputError();

}  // namespace Corvel::Platform
