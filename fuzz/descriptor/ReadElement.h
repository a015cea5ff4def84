#pragma once

#include <string>
#include <utility>
#include <vector>

#include "fuzz/support/XmlTree.h"

namespace Corvel::Fuzz {

/// The only child of that name; null when there is none. Raises what the library raises for several.
xmlNode* OnlyChild(const xmlNode* node, const std::string& tag);

/// The text in it; empty when there is none. Several raise another text than above.
std::string OnlyText(const xmlNode* node, const std::string& tag);

/// Values with their descriptions, each in an element of its own.
using Entries = std::vector<std::pair<std::string, std::string>>;

/// The entries below a node, all of which have one name and their value in one attribute.
/// @param purpose  what they are read for, as the message about an element of another name has it.
Entries ReadEntries(const xmlNode* node,
                    const std::string& tag,
                    const std::string& attribute,
                    const std::string& purpose);

}  // namespace Corvel::Fuzz
