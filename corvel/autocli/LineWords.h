#pragma once

#include <string>
#include <vector>

namespace Corvel::AutoCli {

/// The words of a line, which blanks and tabs separate. Double quotes keep blanks together and are no
/// part of a word. A comment, which begins with "#" where nothing but blanks precedes, has none.
///
/// Deliberate: a quote alone does not begin a word, so blanks between a quote and the first other
/// character of the line are skipped, and quotes before such blanks leave no trace. From the first
/// word on, every stretch between blanks is a word, even one of nothing but quotes, unless it is such
/// a one at the end of the line.
std::vector<std::string> SplitLine(const std::string& line);

}  // namespace Corvel::AutoCli
