#pragma once

#include <functional>
#include <string>

/// What a program needs that does one piece of work in a fresh process and tells its time.
namespace Corvel::Bench {

/// @return the whole content of a file. Ends the program with a message when it cannot be read.
std::string ReadWholeFile(const char* path);

/// Does the work and prints one line, the wall time and the processor time that it took, in seconds:
/// what bench_pair reads from a command that tells its times itself.
///
/// Failures: ends the program with a message when the work answers that it failed.
void TellTimeOf(const std::function<bool()>& work);

}  // namespace Corvel::Bench
