#include "corvel/autocli/plugins/PluginFileCheck.h"

#include <atomic>

#include "corvel/metaobj/CorvelException.h"
#include "corvel/platform/RootOnly.h"

namespace Corvel::AutoCli {

namespace {

using Check = bool(const std::string& path, std::string& reason);

std::atomic<Check*> currentCheck = nullptr;

}  // namespace

void SetPluginFileCheck(bool (*check)(const std::string& path, std::string& reason)) {
    currentCheck = check;
}

bool OnlyRootCanChangePluginFile(const std::string& path, std::string& reason) {
    return Platform::CanOnlyRootChange(path, reason);
}

void RequireAllowedPluginFile(const std::string& path) {
    Check* const check = currentCheck;
    std::string reason;
    if (check != nullptr && !check(path, reason)) {
        throw CorvelException("Unable to load plugin from " + path + ": " + reason);
    }
}

}  // namespace Corvel::AutoCli
