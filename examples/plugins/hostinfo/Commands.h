#pragma once

#include <memory>

#include <corvel/autocli/Command.h>

/// The commands of this plug-in. Each lives in its own file, in an unnamed namespace: equally named
/// classes of two plug-ins would otherwise be taken for one.
namespace HostInfo {

/// `host memory get`: what the kernel says of the memory, as one structure.
std::shared_ptr<Corvel::AutoCli::Command> NewMemoryGetCommand();

/// `host load get`: how busy the host is, as one structure.
std::shared_ptr<Corvel::AutoCli::Command> NewLoadGetCommand();

/// `host cpu list`: the processors, as a list of structures.
std::shared_ptr<Corvel::AutoCli::Command> NewCpuListCommand();

}  // namespace HostInfo
