#pragma once

#include <cstddef>
#include <iosfwd>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/support/TemporaryDirectory.h"

/// Running command lines in real shells, with canaries where injected commands would find them.
namespace Corvel::Testing {

/// One of the shells that /bin/sh may be.
struct Shell {
    std::string name;
    std::string path;
    /// What it is called as; bash and busybox go by it.
    std::vector<std::string> arguments;
};

std::ostream& operator<<(std::ostream& stream, const Shell& shell);

/// dash, bash, bash as sh, busybox sh, mksh.
const std::vector<Shell>& Shells();

/// A shell has said nothing for ten seconds, and was ended.
class ShellHangs : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A folder in which the canary stands under many names.
class Canaries {
public:
    explicit Canaries(const std::vector<std::string>& names);
    std::string Folder() const { return _directory.Path().string(); }

private:
    TemporaryDirectory _directory;
};

/// A place for one shell to run lines in: an empty folder, and a PATH on which the canaries stand
/// before the few tools that lines use. A canary that is run reports it, through a descriptor of its
/// own.
///
/// Failures: ShellHangs; std::system_error when the system has no room for another process.
class Aviary {
public:
    Aviary(const Shell& shell, const Canaries& canaries);

    /// Runs each line by itself, as `sh -c` does.
    /// @return the names of the canaries that ran, in the order in which they did.
    std::vector<std::string> Run(const std::string& line);

    /// @return what a script of several lines prints.
    std::string Output(const std::string& script);

    /// What came of many lines.
    struct Flight {
        /// The first line that ran a canary; as many as there are lines when none did.
        std::size_t line = 0;
        std::vector<std::string> canaries;
    };

    /// Runs many lines, as many as possible of them in one shell: each on lines of its own, and behind
    /// each a line that reports its number and that PATH is still the same. When the reports come back
    /// complete and in order, each line was read to its own end and no further: a shell reads command
    /// lines one by one, so it was read as it would have been alone. Where a report is missing (a syntax
    /// error, a quote that is left open), its line runs again, alone, and the rest in another shell.
    Flight RunAll(const std::vector<std::string>& lines);

    const std::string& Name() const { return _shell.name; }
    /// How many processes have been started.
    std::size_t Started() const { return _started; }

    /// Removes the files that lines have left behind.
    /// @return whether there were any.
    bool CleanUp();

private:
    /// Tells which of some lines, that ran canaries in one shell, does so alone; the first if none.
    Flight FindAlone(const std::vector<std::string>& lines,
                     std::size_t first,
                     std::size_t end,
                     const std::vector<std::string>& together);
    /// @return the lines of the report.
    std::vector<std::string> Report(const std::string& script);
    /// @return the report, and with printsToReport what is printed, too.
    std::string Start(const std::string& script, bool printsToReport);

    const Shell& _shell;
    TemporaryDirectory _directory;
    std::vector<std::string> _environment;
    std::size_t _pathSize = 0;
    std::size_t _started = 0;
};

}  // namespace Corvel::Testing
