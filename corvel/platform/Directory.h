#pragma once

#include <string>
#include <vector>

namespace Corvel::Platform {

/// What reading a directory came to.
enum class DirectoryReading { Complete, NotOpened, Broken };

/// Collects the names of everything in a directory but "." and "..", in no particular order.
///
/// @param names  receives the names; those read so far when the reading broke off.
DirectoryReading ReadDirectory(const std::string& path, std::vector<std::string>& names);

}  // namespace Corvel::Platform
