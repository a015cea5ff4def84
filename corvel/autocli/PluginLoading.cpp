#include <algorithm>
#include <cstddef>
#include <string_view>

#include "corvel/autocli/Dispatcher.h"
#include "corvel/autocli/plugins/PluginFileCheck.h"
#include "corvel/autocli/plugins/SharedLibraryPlugin.h"
#include "corvel/autocli/plugins/XmlPlugin.h"
#include "corvel/metaobj/CorvelException.h"
#include "corvel/metaobj/NullText.h"
#include "corvel/platform/Directory.h"
#include "corvel/platform/Platform.h"
#include "corvel/platform/StandardStreams.h"

namespace Corvel::AutoCli {

namespace {

/// The platform's feature switches that decide about single descriptors.
constexpr std::size_t kSyslogBuiltInFeature = 326;
constexpr std::size_t kDwelquorFeature = 405;

bool IsFeatureOn(std::size_t index) {
    const unsigned char* feature = FeatureList[index];
    return feature != nullptr && *feature != 0;
}

bool IsSwitchedOff(std::string_view fileName) {
    if (fileName == "quorcli-syslog.xml") {
        return IsFeatureOn(kSyslogBuiltInFeature);
    }
    if (fileName == "dwelquorcmd.xml") {
        return !IsFeatureOn(kDwelquorFeature);
    }
    return false;
}

/// Whether the path ends in the extension, with something before it.
bool HasExtension(std::string_view path, std::string_view extension) {
    return path.size() > extension.size() && path.ends_with(extension);
}

std::shared_ptr<Plugin> NewPlugin(const std::string& path) {
    if (HasExtension(path, ".so")) {
        return SharedLibraryPlugin::New(path);
    }
    if (HasExtension(path, ".xml")) {
        return XmlPlugin::New(path);
    }
    return nullptr;
}

/// In the order of loading, which decides which of two plug-ins that offer the same wins.
std::vector<std::string> PluginPaths(const std::string& dir, std::vector<std::string> names) {
    names.erase(std::remove_if(names.begin(), names.end(), IsSwitchedOff), names.end());
    for (std::string& name : names) {
        name.insert(0, dir + "/");
    }
    std::sort(names.begin(), names.end());
    return names;
}

}  // namespace

void Dispatcher::AddPlugin(const char* path) {
    AddPlugin(std::string(MetaObj::TextOrEmpty(path)));
}

void Dispatcher::AddPlugin(const std::string& path) {
    const std::shared_ptr<Plugin> plugin = NewPlugin(path);
    if (plugin == nullptr) {
        return;
    }
    RequireAllowedPluginFile(path);
    plugin->Initialize();
    RegisterPlugin(plugin);
}

void Dispatcher::AddExternalDirectory(const char* dir) {
    AddExternalDirectory(std::string(MetaObj::TextOrEmpty(dir)));
}

void Dispatcher::AddExternalDirectory(const std::string& dir) {
    AddExternalDirectoryInt(dir + "/lib64", false);
    AddExternalDirectoryInt(dir, true);
}

void Dispatcher::AddDefaultDirectories() {
    AddExternalDirectory("/usr/lib/orvane/quorcli");
    AddExternalDirectory("/usr/lib/orvane/quorcli/ext");
}

void Dispatcher::AddExternalDirectoryInt(const char* dir, bool reportOpenFailure) {
    AddExternalDirectoryInt(std::string(MetaObj::TextOrEmpty(dir)), reportOpenFailure);
}

void Dispatcher::AddExternalDirectoryInt(const std::string& dir, bool reportOpenFailure) {
    std::vector<std::string> names;
    switch (Platform::ReadDirectory(dir, names)) {
        case Platform::DirectoryReading::NotOpened:
            if (!reportOpenFailure) {
                return;
            }
            [[fallthrough]];
        case Platform::DirectoryReading::OutOfReach:
            Platform::WriteErrorLines("Unable to open directory " + dir +
                                      " for plugin registration\n");
            return;
        case Platform::DirectoryReading::Broken:
            Platform::WriteErrorLines("Unable to read directory " + dir +
                                      " for plugin registration\n");
            return;
        case Platform::DirectoryReading::Complete:
            break;
    }
    for (const std::string& path : PluginPaths(dir, std::move(names))) {
        try {
            AddPlugin(path);
        } catch (const CorvelException& e) {
            Platform::WriteErrorLines("Error loading plugin " + path +
                                      " skipping.  Error was: " + e.what() + "\n");
        }
    }
}

}  // namespace Corvel::AutoCli
