#pragma once

#include <pthread.h>
#include <sys/types.h>

#include <array>
#include <string>

namespace Corvel::Platform {

/// As long as one lives, a library is being loaded: code runs that we do not know.
///
/// - The process cannot pass for one that succeeded: where that code calls exit() or quick_exit(),
///   whatever the status, it ends with status 1 and on standard error
///     "Unable to load plugin from " + path + ": it ended the process"
///   Functions that were registered for the end of the process earlier are not called then.
/// - The working directory is the same afterwards, so that paths given for later go on meaning the
///   same files.
/// - Of descriptors 0 to 2, those that the code has closed are the null device afterwards, so that no
///   file which is opened later takes their place and children can be started. Nothing can be written
///   to such a standard output: that the result was lost must show.
///
/// What cannot be met this way: _exit(), another program in the place of this one, a function for the
/// end of the process that the library registers and that calls _exit(). A child that the code forks
/// ends as it likes.
///
/// Failures: std::bad_alloc, from the constructor alone.
/// Threads: what another thread does meanwhile is not concerned. One thread loads at a time; scopes
///          may be nested.
class LoadingScope final {
public:
    /// @param path  of the library.
    explicit LoadingScope(const std::string& path);
    LoadingScope(const LoadingScope&) = delete;
    LoadingScope& operator=(const LoadingScope&) = delete;
    ~LoadingScope();

private:
    /// What a directory is, by whatever name.
    struct DirectoryIdentity {
        dev_t device = 0;
        ino_t number = 0;

        bool operator==(const DirectoryIdentity&) const = default;
    };

    static DirectoryIdentity CurrentDirectory();
    static void RequireRefusal();
    static void RefuseToSucceed();

    static LoadingScope* _sCurrent;

    /// Made before it is needed: at the end of the process nobody catches what is thrown.
    std::string _refusal;
    std::string _workingDirectory;
    DirectoryIdentity _directory;
    std::array<bool, 3> _openStreams;
    pid_t _process;
    pthread_t _thread;
    LoadingScope* _outer;
};

}  // namespace Corvel::Platform
