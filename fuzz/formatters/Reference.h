#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "corvel/corvel.h"

namespace Corvel::Fuzz {

// What each formatter is to print for a value, written down without any thought of speed. The dump of
// a single field or a fitted text comes from the library.

using Value = std::shared_ptr<MetaObj::MetaObject>;

std::string PrintJson(const Value& value);
std::string PrintPython(const Value& value);
std::string PrintXml(const Value& value, const AutoCli::FormatParameters& parameters);
std::string PrintSimple(const Value& value, AutoCli::FormatParameters& parameters);
/// Whether simple text shows only so many values: fields may be named several times, at every level.
bool IsSimpleWithin(std::size_t mostValues,
                    const Value& value,
                    const AutoCli::FormatParameters& parameters);

/// @param isComplete  receives whether the table was printed to its end.
/// @throws CorvelException  for what is no list of structures.
std::string PrintTable(const Value& value,
                       AutoCli::FormatParameters& parameters,
                       int screenWidth,
                       bool& isComplete);

}  // namespace Corvel::Fuzz
