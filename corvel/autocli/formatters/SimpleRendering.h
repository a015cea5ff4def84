#pragma once

#include <iosfwd>
#include <string_view>

#include "corvel/metaobj/ValueView.h"

namespace Corvel::AutoCli {

class FormatParameters;

/// Writes one value as indented text, as SimpleFormatter describes it. The stack of the thread does
/// not grow with the depth of the value.
void WriteSimple(const MetaObj::ValueView& value,
                 const FormatParameters& parameters,
                 std::ostream& stream,
                 int level);

/// What the regular expression `.*%(.+)%.*` captures of the whole header: the text between its last
/// percent sign and the last one before that with something in between; empty without a match.
std::string_view FindHeaderTag(std::string_view header);

}  // namespace Corvel::AutoCli
