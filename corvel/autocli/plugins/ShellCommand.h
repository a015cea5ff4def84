#pragma once

#include <string>

#include "corvel/platform/Export.h"

/// Running one shell command line as a child process, and the two hooks by which a host takes part.
namespace Corvel::AutoCli {

/// Runs `command` with /bin/sh, writes `input` to its standard input, appends all of its standard
/// output to `output` (what was there is kept), and waits for its end. Standard error is the
/// caller's. The caller's std::cout is flushed before the child starts; when that fails it is told on
/// standard error, and the child runs nonetheless.
///
/// All of `input` is written before any output is read: a child that writes more than a pipe holds
/// (64 KiB) before it has read all of its input blocks both sides for ever. Keep inputs small.
///
/// Failures: raises CorvelException, with no descriptor left open and without waiting for the child
/// (SIGPIPE never ends the caller; what the child wrote before a failed read stays in `output`):
///   "Can't create input pipe: " + system text
///   "Can't create output pipe: " + system text
///   "Failed to call process '" + command + "': " + status text   (also for a command with a NUL)
///   "Unable to write to sub-process: " + system text             (the child closed its input early)
///   "Unable to read from sub-process: " + system text
///   "Error waiting for process '" + command + "': " + system text
/// Threads:  keeps no state of its own; several threads may call it at once.
/// @return the wait status as waitpid reports it, for WIFEXITED, WEXITSTATUS and the like. An exit
///         status other than 0 is no failure here.
CORVEL_EXPORT int AutoCli_ShellCmd(const std::string& command,
                                   std::string& output,
                                   const std::string& input);

/// The same, with the shell variable QUEN_USERNAME holding `userName` for the first command of the
/// line; an empty name adds nothing. The listener and the messages see the line with its prefix.
CORVEL_EXPORT int AutoCli_ShellCmdWithQuenUsername(const std::string& command,
                                                   const std::string& userName,
                                                   std::string& output,
                                                   const std::string& input);

/// Sets the maker of one extra option that stands before "-c" in the argument vector of every
/// shell; null means none. To be called before any command runs.
CORVEL_EXPORT void SetChildRpNukOptionMaker(std::string (*maker)(int));

/// Sets what is told of every command line that has ended, with its wait status; null means none.
/// To be called before any command runs.
CORVEL_EXPORT void SetCommandExecListener(void (*listener)(const std::string&, int));

/// @return what the maker answers for this id; empty text without a maker, and then the shell gets
///         no extra option.
CORVEL_EXPORT std::string MakeChildRpNukOption(int id);

}  // namespace Corvel::AutoCli
