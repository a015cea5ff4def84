#pragma once

#include "corvel/autocli/plugins/TemplateText.h"

namespace Corvel::AutoCli {

/// Removes the $if tokens that are left, which are those of parameters that were not given.
///
/// The scan goes from brace to brace. The group of a brace and what stands before it from the
/// nearest "$" on are removed when a conditional ("$if{name,", something, "}") lies anywhere in
/// them; the scan then goes on as far behind the place of the removal as the brace was from it,
/// inserted values counting with their length. A group that stays is stepped over as a whole, a
/// brace without its partner by itself.
///
/// Deliberate: braces are paired, so that nested conditionals go together; a "$" some way before a
/// group takes the text between along; a conditional inside a plain group without any "$" before
/// it stays. Templates rely on all of it.
///
/// Takes linear time at any nesting.
TemplateText RemoveConditionals(const TemplateText& text);

}  // namespace Corvel::AutoCli
