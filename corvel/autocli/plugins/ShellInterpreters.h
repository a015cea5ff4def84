#pragma once

#include "corvel/autocli/plugins/ShellLine.h"

namespace Corvel::AutoCli {

/// Marks the words that a program the line runs reads as code once more: what stands behind eval,
/// sh -c, perl -e, ssh host and the like, the programs of awk and sed, what is piped into a shell that
/// gets nothing else to run, and what a shell reads as arithmetic or as the name of a variable, which
/// may hold arithmetic. Programs that run others (sudo, env, timeout ...) are looked through.
///
/// Knows programs by their names, so one that it does not know goes unnoticed. Where it cannot tell,
/// it marks too much: words that only look like options, every word behind the first one of code.
void MarkInterpretedWords(ShellLine& line);

}  // namespace Corvel::AutoCli
