#pragma once

#include <string>

namespace Corvel::Platform {

/// Whether nobody but root can have put the file there or can change it: it is a regular file, and it
/// and every folder on the way to it, through symbolic links, belong to root and can be written
/// neither by their group nor by others. A link itself is as safe as the folder that it stands in.
///
/// Nothing is opened. The folders are looked at from the topmost down, each before anything in it is,
/// so that what the path leads to cannot be exchanged by others between one look and the next, nor
/// after the last one.
///
/// Owners mean nothing on a file system that is mounted "nosuid", where whoever brought the disk has
/// chosen them, nor do paths in /proc, whose links are none: both are refused. So is a path without a
/// folder, which the system's loader would look for in places of its own.
///
/// @param reason  receives what speaks against the file: the place and what is wrong with it.
bool CanOnlyRootChange(const std::string& path, std::string& reason);

}  // namespace Corvel::Platform
