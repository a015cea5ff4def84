#include "corvel/platform/RootOnly.h"

#include <errno.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/vfs.h>

#include <filesystem>
#include <linux/magic.h>
#include <string_view>
#include <system_error>
#include <vector>

#include "corvel/platform/ErrorText.h"

namespace Corvel::Platform {

namespace {

/// As many as the system follows.
constexpr int kMostLinks = 40;

/// @return what speaks against the owner and the mode of a place; empty when nothing does.
std::string ObjectionToRights(const struct stat& status) {
    if (status.st_uid != 0) {
        return "belongs to user " + std::to_string(status.st_uid) + ", not to root";
    }
    if ((status.st_mode & S_IWGRP) != 0) {
        return "can be written by its group";
    }
    if ((status.st_mode & S_IWOTH) != 0) {
        return "can be written by others";
    }
    return {};
}

std::string ObjectionToFileSystem(const std::string& place) {
    struct statfs system = {};
    if (statfs(place.c_str(), &system) != 0) {
        return ErrorText(errno);
    }
    if (system.f_type == PROC_SUPER_MAGIC) {
        return "is not on a disk";
    }
    if ((static_cast<unsigned long>(system.f_flags) & ST_NOSUID) != 0) {
        return "is on a file system mounted nosuid, where owners mean nothing";
    }
    return {};
}

/// A way along a path, one place after the other, that holds each of them against the rule.
class Walk {
public:
    explicit Walk(const std::string& path) { PutAhead(path); }

    /// @return what speaks against the file at the end or a folder before it; empty when nothing does.
    std::string Objection() {
        std::string objection = Visit("/");
        while (objection.empty() && !_ahead.empty()) {
            const std::string name = std::move(_ahead.back());
            _ahead.pop_back();
            objection = Step(name);
        }
        if (objection.empty() && !S_ISREG(_mode)) {
            return Name() + ": not a regular file";
        }
        return objection;
    }

private:
    const std::string& Name() const {
        static const std::string top = "/";
        return _place.empty() ? top : _place;
    }

    std::string Step(const std::string& name) {
        if (!S_ISDIR(_mode)) {
            return Name() + ": " + ErrorText(ENOTDIR);
        }
        if (name == "..") {
            _place.erase(_place.empty() ? 0 : _place.rfind('/'));
            return {};
        }
        return Visit(_place + "/" + name);
    }

    /// Goes to a place in the folder where the walk is, which nobody else can change any more.
    std::string Visit(const std::string& place) {
        struct stat status = {};
        if (lstat(place.c_str(), &status) != 0) {
            return place + ": " + ErrorText(errno);
        }
        if (S_ISLNK(status.st_mode)) {
            return Follow(place);
        }
        std::string objection = ObjectionToRights(status);
        if (objection.empty()) {
            objection = ObjectionToFileSystem(place);
        }
        if (!objection.empty()) {
            return place + ": " + objection;
        }
        _place = place == "/" ? "" : place;
        _mode = status.st_mode;
        return {};
    }

    std::string Follow(const std::string& link) {
        if (++_links > kMostLinks) {
            return link + ": " + ErrorText(ELOOP);
        }
        std::error_code failure;
        const std::string target = std::filesystem::read_symlink(link, failure);
        if (failure) {
            return link + ": " + failure.message();
        }
        if (target.starts_with('/')) {
            _place.clear();
        }
        PutAhead(target);
        return {};
    }

    /// Takes a path apart; its parts come before everything else that is ahead.
    void PutAhead(std::string_view path) {
        while (!path.empty()) {
            const std::size_t slash = path.rfind('/');
            const std::size_t begin = slash == std::string_view::npos ? 0 : slash + 1;
            const std::string_view part = path.substr(begin);
            if (!part.empty() && part != ".") {
                _ahead.emplace_back(part);
            }
            path = path.substr(0, begin == 0 ? 0 : slash);
        }
    }

    /// The folders and the file without any link; empty is the topmost folder.
    std::string _place;
    mode_t _mode = S_IFDIR;
    /// The next one last.
    std::vector<std::string> _ahead;
    int _links = 0;
};

}  // namespace

bool CanOnlyRootChange(const std::string& path, std::string& reason) {
    if (path.find('\0') != std::string::npos) {
        reason = path.c_str() + std::string(": null character in the path");
        return false;
    }
    if (path.find('/') == std::string::npos) {
        reason = path + ": named without its folder";
        return false;
    }
    std::string folder;
    if (!path.starts_with('/')) {
        std::error_code failure;
        folder = std::filesystem::current_path(failure).string() + "/";
        if (failure) {
            reason = path + ": working directory: " + failure.message();
            return false;
        }
    }
    reason = Walk(folder + path).Objection();
    return reason.empty();
}

}  // namespace Corvel::Platform
