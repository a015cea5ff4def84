#include <dirent.h>
#include <dlfcn.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

namespace {

/// Where a path below /usr/lib/orvane leads instead; any other path is left alone.
std::string Redirected(const char* path) {
    const std::string system = "/usr/lib/orvane";
    const std::string asked = path;
    const char* const folder = std::getenv("REDIRECTION");
    return folder != nullptr && asked.rfind(system, 0) == 0 ? folder + asked.substr(system.size())
                                                            : asked;
}

template <typename Function>
Function Next(const char* name) {
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" DIR* opendir(const char* name) {
    return Next<DIR* (*)(const char*)>("opendir")(Redirected(name).c_str());
}

extern "C" int access(const char* name, int mode) noexcept {
    return Next<int (*)(const char*, int)>("access")(Redirected(name).c_str(), mode);
}
