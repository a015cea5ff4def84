#pragma once

#include <string>
#include <vector>

namespace Corvel::Platform {

/// What reading a directory came to. One that is out of reach may be there: the system has run out of
/// descriptors, or a disk fails.
enum class DirectoryReading { Complete, NotOpened, OutOfReach, Broken };

/// Collects the names of everything in a directory but "." and "..", in no particular order.
///
/// @param names  receives the names; those read so far when the reading broke off.
///
/// Failures: std::bad_alloc, also where the system had no memory to open the directory.
DirectoryReading ReadDirectory(const std::string& path, std::vector<std::string>& names);

}  // namespace Corvel::Platform
