#pragma once

#include <string_view>

#include "corvel/autocli/plugins/ShellLine.h"

namespace Corvel::AutoCli {

/// Reads a command line as `sh -c` does: quotes, backslashes, comments, expansions, here-documents
/// and the words of its commands.
///
/// The reading follows the POSIX shell. Where the usual shells (dash, bash, busybox, mksh) differ, or
/// where only they themselves could tell, everything from there on is marked as doubtful. Any bytes
/// are accepted; what no shell accepts is read as far as it makes sense. Takes linear time, and
/// constant stack at any nesting.
ShellLine ReadShellLine(std::string_view line);

}  // namespace Corvel::AutoCli
