#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/ProcessRunner.h"
#include "tests/support/TemporaryDirectory.h"

namespace Corvel::Testing {
namespace {

constexpr const char* kDescriptor = R"(<plugin><version>1.0.0</version><namespaces>
<namespace path="found"><description>Of a test.</description></namespace>
</namespaces></plugin>)";

/// Lists what the plug-in brings, by this program.
Result List(const std::string& program,
            const std::string& plugin,
            const std::vector<std::string>& variables = {},
            std::function<void()> prepare = {}) {
    Command command{{program, "--plugin", plugin, "found"}};
    command.environment.insert(command.environment.end(), variables.begin(), variables.end());
    command.prepare = std::move(prepare);
    return RunProcess(command);
}

/// The plug-in in a folder that everybody can write was not loaded.
Result Refused(const std::string& plugin) {
    return {1,
            "",
            "Unable to load plugin " + plugin + ": Unable to load plugin from " + plugin +
                ": /tmp: can be written by its group\n"
                "Errors: \n"
                "Unable to find a command or namespace with the name 'found' in namespace \n"};
}

Result Loaded(const std::string& program) {
    return {1,
            "Usage: " + program +
                " [disp options] found <namespaces> <command>\n"
                "\n"
                "For help please run " +
                program +
                " --help\n"
                "\n"
                "Available Namespaces: \n"
                "Available Commands: \n",
            ""};
}

const std::vector<std::string> kSecureMode = {"LD_PRELOAD=" CORVEL_SECURE_MODE,
                                              "LD_LIBRARY_PATH=" CORVEL_REDIRECTION_FOLDER,
                                              "ASAN_OPTIONS=verify_asan_link_order=0"};

TEST(QuorcliPluginFileCheck, IsNotMadeUsually) {
    const TemporaryDirectory folder("/tmp");
    EXPECT_EQ(List(CORVEL_QUORCLI, folder.Write("a.xml", kDescriptor)), Loaded(CORVEL_QUORCLI));
}

TEST(QuorcliPluginFileCheck, IsMadeWhereTheProgramWasBuiltForIt) {
    const TemporaryDirectory folder("/tmp");
    const std::string plugin = folder.Write("a.xml", kDescriptor);
    EXPECT_EQ(List(CORVEL_CHECKING_QUORCLI, plugin), Refused(plugin));
}

TEST(QuorcliPluginFileCheck, IsMadeInSecureMode) {
    const TemporaryDirectory folder("/tmp");
    const std::string plugin = folder.Write("a.xml", kDescriptor);
    EXPECT_EQ(List(CORVEL_QUORCLI, plugin, kSecureMode), Refused(plugin));
}

/// A folder that root alone can change, where the programs' bits that raise rights count.
class QuorcliPluginFileCheckAsRoot : public testing::Test {
protected:
    void SetUp() override {
        if (::geteuid() != 0) {
            GTEST_SKIP() << "only root can make what passes";
        }
        struct statvfs system = {};
        if (::statvfs("/var/lib", &system) != 0 || (system.f_flag & ST_NOSUID) != 0 ||
            ::prctl(PR_GET_NO_NEW_PRIVS, 0, 0, 0, 0) == 1) {
            GTEST_SKIP() << "no program gets rights from its file here";
        }
        _folder = std::make_unique<TemporaryDirectory>("/var/lib");
        ASSERT_EQ(::chmod(_folder->Path().c_str(), 0755), 0);
        _plugin = _folder->Write("a.xml", kDescriptor);
        ASSERT_EQ(::chmod(_plugin.c_str(), 0644), 0);
    }

    std::unique_ptr<TemporaryDirectory> _folder;
    std::string _plugin;
};

TEST_F(QuorcliPluginFileCheckAsRoot, LetsFilesOfRootPass) {
    EXPECT_EQ(List(CORVEL_CHECKING_QUORCLI, _plugin), Loaded(CORVEL_CHECKING_QUORCLI));
    EXPECT_EQ(List(CORVEL_QUORCLI, _plugin, kSecureMode), Loaded(CORVEL_QUORCLI));
}

TEST_F(QuorcliPluginFileCheckAsRoot, IsMadeByAProgramThatRaisesTheRightsOfItsCaller) {
    const std::string program = _folder->File("quorcli");
    std::filesystem::copy_file(CORVEL_QUORCLI, program);
    ASSERT_EQ(::chmod(program.c_str(), 04755), 0);
    const auto becomeNobody = [] {
        constexpr uid_t kNobody = 65534;
        if (::setgid(kNobody) != 0 || ::setuid(kNobody) != 0) {
            ::_exit(126);
        }
    };
    EXPECT_EQ(List(program, _plugin, {}, becomeNobody), Loaded(program));

    const TemporaryDirectory open("/tmp");
    const std::string others = open.Write("a.xml", kDescriptor);
    EXPECT_EQ(List(program, others, {}, becomeNobody), Refused(others));
}

}  // namespace
}  // namespace Corvel::Testing
