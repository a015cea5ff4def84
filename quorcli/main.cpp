#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/auxv.h>
#include <unistd.h>

#include <cstdlib>
#include <exception>
#include <iostream>
#include <optional>

#include <corvel/corvel.h>

namespace {

/// Puts the null device in the place of standard streams that the caller closed, so that no file
/// which is opened later takes their place. Nothing can be written to such a standard output: that
/// the result was lost must show.
void OpenMissingStandardStreams() {
    constexpr int kModes[] = {O_RDONLY, O_RDONLY, O_WRONLY};
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
        if (::fcntl(descriptor, F_GETFD) == -1 && errno == EBADF) {
            // The lowest free descriptor is this one. Children inherit standard streams.
            // NOLINTNEXTLINE(android-cloexec-open)
            static_cast<void>(::open("/dev/null", kModes[descriptor]));
        }
    }
}

/// Whoever started us may ignore SIGCHLD, and then the status of a child would be lost.
void ReceiveStatusOfChildren() {
    ::signal(SIGCHLD, SIG_DFL);
}

/// Whether plug-ins come from root alone: because this build says so, or because the process has
/// rights that its caller lacks.
bool TrustsRootOnly() {
#ifdef QUORCLI_CHECK_PLUGIN_FILES
    return true;
#else
    return ::getauxval(AT_SECURE) != 0;
#endif
}

/// Whether the default plug-ins are not there. Where the system cannot tell, reading them will.
bool LacksDefaultPlugins() {
    return ::access("/usr/lib/orvane/quorcli", F_OK) != 0 &&
           (errno == ENOENT || errno == ENOTDIR || errno == EACCES);
}

void LoadDefaultPlugins(Corvel::AutoCli::CliDispatcher& dispatcher) {
    if (!LacksDefaultPlugins()) {
        dispatcher.AddDefaultDirectories();
    }
}

void ShowError(const char* message) {
    std::cout.flush();
    std::cerr << "Errors: \n" << message << '\n';
}

}  // namespace

int main(int argc, char** argv) {
    OpenMissingStandardStreams();
    ReceiveStatusOfChildren();
    if (TrustsRootOnly()) {
        Corvel::AutoCli::SetPluginFileCheck(&Corvel::AutoCli::OnlyRootCanChangePluginFile);
    }

    // It outlives the handlers below: with it goes the library that threw the exception.
    std::optional<Corvel::AutoCli::CliDispatcher> dispatcher;
    try {
        dispatcher.emplace();
        LoadDefaultPlugins(*dispatcher);
        dispatcher->HandleArgvInput(argc, argv);
    } catch (const std::exception& e) {
        ShowError(e.what());
    } catch (...) {
        ShowError("Unexpected exception");
    }
    return EXIT_FAILURE;
}
