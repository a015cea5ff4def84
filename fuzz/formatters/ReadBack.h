#pragma once

#include <string>

namespace Corvel::Fuzz {

// Readers of what the formatters print, each as strict as its language. They give what DumpValue()
// gives for the value that was printed, and for a text that is not right something else.

/// Every escape \u00hh stands for one byte.
/// @return a dump without type names; "broken at " + where the text is no JSON.
std::string ReadJson(const std::string& text);

/// @return a dump with type names; "broken" for a text that libxml2 cannot parse or that has
///         something else in it than a value.
std::string ReadXmlOutput(const std::string& text);

/// Lets a Python process, which is started once, evaluate the literal.
/// @return a dump without type names; the exception's text for what is no literal.
std::string ReadPython(const std::string& text);

}  // namespace Corvel::Fuzz
