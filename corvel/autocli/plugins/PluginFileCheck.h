#pragma once

#include <string>

#include "corvel/platform/Export.h"

/// A host's say in which files may be plug-ins. None by default: what the caller of the host names is
/// loaded, with the rights of the host.
namespace Corvel::AutoCli {

/// Sets what is asked about every shared library and every descriptor that Dispatcher::AddPlugin()
/// is about to load, from a directory or by itself; null means none.
///
/// @param check  @return whether the file may be loaded; where it may not, `reason` (empty before)
///               receives why. It is called with the path as AddPlugin() got it, before anything of
///               the file is read or mapped. What it throws passes through.
///
/// Files of other kinds are not asked about, nor what comes by another way: plug-ins that the host
/// makes itself (see RequireAllowedPluginFile()), libraries that a library needs or loads, programs
/// that a descriptor runs.
///
/// Between the check and the loading the path may come to name another file, unless the check refuses
/// each path that somebody else can change, as OnlyRootCanChangePluginFile() does.
///
/// Threads: to be called before any plug-in is loaded. One check for the whole process.
CORVEL_EXPORT void SetPluginFileCheck(bool (*check)(const std::string& path, std::string& reason));

/// A ready-made check: whether nobody but root can have put the file there or can change it. It is a
/// regular file; it and every folder on the way to it, the folders of symbolic links and those of
/// their targets included, up to the topmost one, belong to root and can be written neither by their
/// group (which an access list that lets others write also shows) nor by others.
///
/// Refused besides are files on a file system mounted "nosuid", whose owners mean nothing, paths that
/// lead through /proc, and paths without a slash, which the loader would look for elsewhere.
///
/// A file that passes cannot be exchanged before it is loaded, except by root. What the check cannot
/// see: a process that has had the file open for writing since before it was root's alone, and what
/// root itself was led to install.
///
/// @param reason  receives the place and what is wrong with it, such as
///                "/opt/plugins: can be written by its group"; empty when nothing is.
CORVEL_EXPORT bool OnlyRootCanChangePluginFile(const std::string& path, std::string& reason);

/// Asks the check that is set, for hosts that make plug-ins from files themselves. Raises
/// CorvelException where it refuses
///   "Unable to load plugin from " + path + ": " + reason
CORVEL_EXPORT void RequireAllowedPluginFile(const std::string& path);

}  // namespace Corvel::AutoCli
