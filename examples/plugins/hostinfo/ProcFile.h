#pragma once

#include <string>
#include <utility>
#include <vector>

namespace HostInfo {

/// The whole text of a file of /proc.
/// Failures: throws std::runtime_error "Unable to read " + path, which becomes the command's error.
std::string ReadProcFile(const std::string& path);

/// The "key: value" lines of a text, in order, with blanks trimmed off both. Lines without a colon
/// give an empty value.
std::vector<std::pair<std::string, std::string>> ReadKeyValues(const std::string& text);

}  // namespace HostInfo
