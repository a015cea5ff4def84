#include <sys/wait.h>

#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "corvel/platform/LoadingScope.h"
#include "tests/metaobj/FailingAllocator.h"
#include "tests/support/TemporaryDirectory.h"

namespace Corvel::Platform {
namespace {

using Test::FailingAllocator;

const std::string kPath = "some/path_that_no_small_string_holds.so";

TEST(NoMemory, LoadingEndsWithoutAny) {
    const std::filesystem::path before = std::filesystem::current_path();
    const Testing::TemporaryDirectory folder;
    std::size_t allocations = 0;
    {
        auto scope = std::make_unique<LoadingScope>(kPath);
        std::filesystem::current_path(folder.Path());
        const FailingAllocator allocator(0);
        scope.reset();
        allocations = FailingAllocator::Count();
    }
    EXPECT_EQ(allocations, 0U);
    EXPECT_EQ(std::filesystem::current_path(), before);
}

TEST(NoMemoryDeathTest, LibraryThatEndsTheProcessIsToldOfWithoutAny) {
    const auto end = [] {
        const LoadingScope scope(kPath);
        const FailingAllocator allocator(0);
        std::exit(0);
    };
    EXPECT_EXIT(end(),
                testing::ExitedWithCode(1),
                "Unable to load plugin from some/path_that_no_small_string_holds.so: it ended the "
                "process\n");
}

}  // namespace
}  // namespace Corvel::Platform
