#include <errno.h>

#include <cstdint>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "corvel/autocli/plugins/ShellCommand.h"
#include "corvel/metaobj/CorvelException.h"
#include "corvel/platform/Platform.h"

// What the library tells the host's process functions, whatever ours make of it: the linker puts those
// below in front of ours (--wrap).

namespace Corvel::Testing {

namespace {

struct StartCall {
    std::string path;
    std::vector<std::string> arguments;
    bool hasEnvironment = true;
    int resourcePool = 0;
    std::vector<int> descriptors;
    int userId = 0;
    int groupId = 0;
    int flags = 1;
};

struct TextCall {
    std::uint64_t code = 0;
    std::size_t size = 0;
    int flags = 1;
};

StartCall lastStart;
TextCall lastText;

}  // namespace

decltype(NukuserCompat_ForkExec) ForkExec __asm__("__real_NukuserCompat_ForkExec");
decltype(NukuserCompat_ForkExec) RecordForkExec __asm__("__wrap_NukuserCompat_ForkExec");
decltype(NukuserStatus_CodeToString) CodeToString __asm__("__real_NukuserStatus_CodeToString");
decltype(NukuserStatus_CodeToString) RecordCodeToString __asm__(
    "__wrap_NukuserStatus_CodeToString");

[[gnu::used]] std::uint64_t RecordForkExec(const char* path,
                                           const char* const* argv,
                                           const char* const* envp,
                                           int resourcePool,
                                           const int* descriptors,
                                           std::size_t descriptorCount,
                                           int userId,
                                           int groupId,
                                           int flags,
                                           int* pid) {
    lastStart = {path,
                 {},
                 envp != nullptr,
                 resourcePool,
                 {descriptors, descriptors + descriptorCount},
                 userId,
                 groupId,
                 flags};
    for (const char* const* argument = argv; *argument != nullptr; ++argument) {
        lastStart.arguments.emplace_back(*argument);
    }
    return ForkExec(
        path, argv, envp, resourcePool, descriptors, descriptorCount, userId, groupId, flags, pid);
}

[[gnu::used]] void RecordCodeToString(std::uint64_t code,
                                      char* buffer,
                                      std::size_t size,
                                      int flags) {
    lastText = {code, size, flags};
    CodeToString(code, buffer, size, flags);
}

namespace {

using AutoCli::AutoCli_ShellCmd;
using testing::ElementsAre;

TEST(PlatformCalls, ShellStartsInTheCallersPlaceWithThreeDescriptors) {
    std::string output;
    EXPECT_EQ(AutoCli_ShellCmd("echo a", output, ""), 0);
    EXPECT_EQ(output, "a\n");
    EXPECT_EQ(lastStart.path, "/bin/sh");
    EXPECT_THAT(lastStart.arguments, ElementsAre("/bin/sh", "-c", "echo a"));
    EXPECT_FALSE(lastStart.hasEnvironment);
    EXPECT_EQ(lastStart.resourcePool, -1);
    EXPECT_THAT(lastStart.descriptors, ElementsAre(testing::Gt(2), testing::Gt(2), 2));
    EXPECT_EQ(lastStart.userId, -1);
    EXPECT_EQ(lastStart.groupId, -1);
    EXPECT_EQ(lastStart.flags, 0);
}

TEST(PlatformCalls, TextOfAStatusIsAskedForWithoutFlags) {
    std::string output;
    const std::string command(std::size_t{1} << 20, ':');
    try {
        AutoCli_ShellCmd(command, output, "");
        ADD_FAILURE() << "nothing is raised";
    } catch (const CorvelException& e) {
        EXPECT_EQ(std::string(e.what()),
                  "Failed to call process '" + command + "': Argument list too long");
    }
    EXPECT_EQ(lastText.code, static_cast<std::uint64_t>(E2BIG));
    EXPECT_GE(lastText.size, 200U);
    EXPECT_EQ(lastText.flags, 0);
}

}  // namespace
}  // namespace Corvel::Testing
