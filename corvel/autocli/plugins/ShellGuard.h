#pragma once

#include "corvel/autocli/plugins/TemplateText.h"

namespace Corvel::AutoCli {

/// Makes sure that the shell takes every value in an expanded command line for data.
///
/// The line is read twice: as it is, and with a harmless word in the place of every value. It is
/// refused unless
/// - the bytes of the template mean the same both times: no value takes a quote of the template away,
///   makes another word the command, lets two operators become one, starts a comment, an assignment,
///   a redirection or an option behind which a shell finds code;
/// - it has as many commands both times;
/// - each byte of a value stands for itself there, or parts words, or is the backslash of one that
///   stands for itself. File name patterns stay patterns;
/// - inside an expansion ($(..), `..`, ${..}, $((..))), in a here-document, behind eval, sh -c and
///   the like, and where shells read the line differently, values hold nothing but letters, digits
///   and  _ . , : / @ + = - %
///
/// Deliberate: a value that is the command's name because the template puts it there is what the
/// template's author wants. What a program makes of its arguments is its own affair.
///
/// Takes linear time. Failures: raises CorvelException
///   "Unsafe value for parameter '" + name +
///     "': it would be read by the shell as code, not as data."
void RefuseUnsafeValues(const TemplateText& line);

}  // namespace Corvel::AutoCli
