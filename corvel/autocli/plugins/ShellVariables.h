#pragma once

#include <string_view>

#include "corvel/autocli/plugins/ShellLine.h"

/// What is known of the variables whose values the shells read as code, in whatever quotes they are given.
namespace Corvel::AutoCli {

/// @param assignment  a word; what stands before its first = or [ is the variable's name.
/// @return whether it assigns to a variable that some shell evaluates as arithmetic at once, which may
///         run commands (OPTIND='a[$(id)]'), or whose value it expands or runs later.
bool AssignsCode(std::string_view assignment);

/// Marks what is assigned to such variables as code, before commands and in loops.
/// @param everyVariable  any variable may be such a one: the line declares types.
void MarkAssignedCode(ShellLine& line, bool everyVariable);

}  // namespace Corvel::AutoCli
