#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/ProcessRunner.h"
#include "tests/support/TemporaryDirectory.h"

namespace Corvel::Testing {
namespace {

/// Runs quorcli with these arguments, and more variables than the usual.
Result RunQuorcli(const std::vector<std::string>& arguments,
                  const std::vector<std::string>& variables = {}) {
    Command command{{CORVEL_QUORCLI}};
    command.arguments.insert(command.arguments.end(), arguments.begin(), arguments.end());
    command.environment.insert(command.environment.end(), variables.begin(), variables.end());
    return RunProcess(command);
}

Result RunTestPlugin(const std::string& name, const std::vector<std::string>& variables = {}) {
    return RunQuorcli({"--plugin", CORVEL_TEST_PLUGIN, "test", name}, variables);
}

Result Failure(const std::string& error) {
    return {1, "", "Errors: \n" + error + "\n"};
}

// --- Shared-library plug-ins -------------------------------------------------------------------

TEST(Quorcli, RunsCommandsOfASharedLibrary) {
    EXPECT_EQ(RunTestPlugin("succeed"), (Result{0, "Done.\n", ""}));
}

TEST(Quorcli, PrintsExamplesInTheHelpOfACommand) {
    const std::string usage = std::string(CORVEL_QUORCLI) + " test succeed";
    EXPECT_EQ(RunQuorcli({"--plugin", CORVEL_TEST_PLUGIN, "test", "succeed", "--help"}),
              (Result{0,
                      "Usage: " + usage +
                          " <options>\n"
                          "\n"
                          "Description: A command of the test plug-in.\n"
                          "\n"
                          "  -h|--help Show the help message.\n"
                          "\n"
                          "Examples: \n"
                          "\n"
                          "    Do it fast : :\n"
                          "# " +
                          usage + " # " + usage +
                          " --fast 1        \n"
                          "\n",
                      ""}));
}

TEST(Quorcli, ReportsWhatACommandThrows) {
    EXPECT_EQ(RunTestPlugin("throwStandard"),
              Failure("Error on command test throwStandard : A standard exception."));
    EXPECT_EQ(RunTestPlugin("throwOwn"),
              Failure("Error on command test throwOwn : An exception of the plug-in's own."));
}

TEST(Quorcli, ShowsExceptionsThatNobodyElseCatches) {
    EXPECT_EQ(RunTestPlugin("throwClass"), Failure("Unexpected exception"));
    EXPECT_EQ(RunTestPlugin("throwNumber"), Failure("Unexpected exception"));
}

TEST(Quorcli, ShowsWhatARegistrationThrowsWhileItsLibraryIsStillLoaded) {
    EXPECT_EQ(RunTestPlugin("succeed", {"REGISTRATION=own"}),
              Failure("An exception of the plug-in's own."));
    EXPECT_EQ(RunTestPlugin("succeed", {"REGISTRATION=class"}), Failure("Unexpected exception"));
}

TEST(Quorcli, CommandsOfALibraryThatFailedToRegisterStillRun) {
    const std::string path = CORVEL_TEST_PLUGIN;
    EXPECT_EQ(
        RunTestPlugin("succeed", {"REGISTRATION=corvel"}),
        (Result{0,
                "Done.\n",
                "Unable to load plugin " + path + ": Error while trying to register the plugin " +
                    path + " The plug-in refuses. The functionality in " + path +
                    " will not be available until this issue is resolved.\n"}));
}

// --- Default directories -----------------------------------------------------------------------

class QuorcliDefaultDirectories : public testing::Test {
protected:
    /// Runs quorcli with the folder in the place of /usr/lib/orvane. LD_PRELOAD gets a bare name: in
    /// it, a blank in the path of the build would end the path.
    Result Run() {
        return RunQuorcli({"nosuch"},
                          {"LD_PRELOAD=" CORVEL_REDIRECTION,
                           "LD_LIBRARY_PATH=" CORVEL_REDIRECTION_FOLDER,
                           "ASAN_OPTIONS=verify_asan_link_order=0",
                           "REDIRECTION=" + _folder.Path().string()});
    }

    static std::string Refused(const std::string& path) {
        return "Error loading plugin /usr/lib/orvane/quorcli/" + path +
               " skipping.  Error was: Unable to parse XML descriptor: /usr/lib/orvane/quorcli/" +
               path + "\n";
    }

    TemporaryDirectory _folder;
    const std::string _unknownName =
        "Errors: \nUnable to find a command or namespace with the name 'nosuch' in namespace \n";
};

TEST_F(QuorcliDefaultDirectories, AreNotLookedForWhereTheFirstDoesNotExist) {
    EXPECT_EQ(Run(), (Result{1, "", _unknownName}));
}

TEST_F(QuorcliDefaultDirectories, AreLoadedEachAfterItsLib64) {
    for (const char* file : {"d.xml", "lib64/c.xml", "ext/b.xml", "ext/lib64/a.xml"}) {
        _folder.Write(std::string("quorcli/") + file, "");
    }
    EXPECT_EQ(Run(),
              (Result{1,
                      "",
                      Refused("lib64/c.xml") + Refused("d.xml") + Refused("ext/lib64/a.xml") +
                          Refused("ext/b.xml") + _unknownName}));
}

TEST_F(QuorcliDefaultDirectories, MissingSecondOneIsReported) {
    _folder.Write("quorcli/notes.txt", "");
    EXPECT_EQ(Run(),
              (Result{1,
                      "",
                      "Unable to open directory /usr/lib/orvane/quorcli/ext for plugin "
                      "registration\n" +
                          _unknownName}));
}

}  // namespace
}  // namespace Corvel::Testing
