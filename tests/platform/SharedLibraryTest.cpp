#include <dlfcn.h>

#include <string>

#include <gtest/gtest.h>

#include "corvel/platform/SharedLibrary.h"
#include "tests/support/ProcessState.h"
#include "tests/support/TemporaryDirectory.h"

namespace Corvel::Platform {
namespace {

using Testing::DescriptorLimit;
using Testing::ReadFile;
using Testing::TemporaryDirectory;

const std::string kLibrary = CORVEL_TEST_PLUGINS "/NoEntryPoint.so";

TEST(SharedLibrary, LoadedLibraryHasItsSymbols) {
    std::string reason;
    const auto library = SharedLibrary::Load(kLibrary, reason);
    ASSERT_NE(nullptr, library);
    const void* marker = library->FindSymbol("corvel_test_no_entry_point", reason);
    ASSERT_NE(nullptr, marker);
    EXPECT_EQ(1, *static_cast<const int*>(marker));
    EXPECT_EQ("", reason);
}

TEST(SharedLibrary, UnknownSymbolIsNull) {
    std::string reason;
    const auto library = SharedLibrary::Load(kLibrary, reason);
    ASSERT_NE(nullptr, library);
    EXPECT_EQ(nullptr, library->FindSymbol("corvel_test_nosuch", reason));
    EXPECT_EQ(kLibrary + ": undefined symbol: corvel_test_nosuch", reason);
}

TEST(SharedLibrary, FunctionsAreToldFromData) {
    std::string reason;
    const auto library = SharedLibrary::Load(kLibrary, reason);
    ASSERT_NE(nullptr, library);
    EXPECT_EQ(nullptr, library->FindFunction("corvel_test_nosuch", reason));
    EXPECT_EQ(kLibrary + ": undefined symbol: corvel_test_nosuch", reason);
    EXPECT_EQ(nullptr, library->FindFunction("corvel_test_no_entry_point", reason));
    EXPECT_EQ(kLibrary + ": symbol is no function: corvel_test_no_entry_point", reason);
}

/// The address of some functions is chosen when they are looked up, and then lies at no symbol.
TEST(SharedLibrary, FunctionsOfEveryKindCanBeCalled) {
    std::string reason;
    const auto library = SharedLibrary::Load("libc.so.6", reason);
    ASSERT_NE(nullptr, library) << reason;
    for (const char* const name : {"getpid", "memcpy", "strlen"}) {
        EXPECT_NE(nullptr, library->FindFunction(name, reason)) << reason;
    }
}

TEST(SharedLibrary, PathWithoutSlashIsLookedForByTheLoader) {
    std::string reason;
    EXPECT_NE(nullptr, SharedLibrary::Load("libxml2.so.2", reason)) << reason;
}

TEST(SharedLibrary, SymbolsServeOthersUnlessTheyAreLocal) {
    std::string reason;
    const auto local = SharedLibrary::Load(kLibrary, reason, SharedLibrary::Scope::Local);
    ASSERT_NE(nullptr, local);
    EXPECT_NE(nullptr, local->FindSymbol("corvel_test_no_entry_point", reason));
    EXPECT_EQ(nullptr, dlsym(RTLD_DEFAULT, "corvel_test_no_entry_point"));
    const auto global = SharedLibrary::Load(kLibrary, reason);
    EXPECT_NE(nullptr, dlsym(RTLD_DEFAULT, "corvel_test_no_entry_point"));
}

TEST(SharedLibrary, PathIsNotCutAtANullCharacter) {
    std::string reason;
    EXPECT_EQ(nullptr, SharedLibrary::Load(kLibrary + std::string("\0.so", 4), reason));
    EXPECT_EQ(kLibrary + ": null character in the path", reason);
}

/// The loader itself would die of some of these lengths.
TEST(SharedLibrary, LibraryCutShortAnywhereIsRefusedOrComplete) {
    const TemporaryDirectory folder;
    const std::string whole = ReadFile(kLibrary);
    ASSERT_LT(8192u, whole.size());
    int refused = 0;
    for (std::size_t length = 0; length < whole.size(); length += 509) {
        const std::string path =
            folder.Write("cut" + std::to_string(length) + ".so", whole.substr(0, length));
        std::string reason;
        if (SharedLibrary::Load(path, reason) == nullptr) {
            ++refused;
            EXPECT_EQ(0u, reason.find(path + ": ")) << reason;
        }
    }
    EXPECT_LT(10, refused);
}

TEST(SharedLibrary, LibraryWithoutItsLastSegmentIsTooShort) {
    const TemporaryDirectory folder;
    const std::string path = folder.Write("cut.so", ReadFile(kLibrary).substr(0, 4096));
    std::string reason;
    EXPECT_EQ(nullptr, SharedLibrary::Load(path, reason));
    EXPECT_EQ(path + ": file too short", reason);
}

TEST(SharedLibrary, FileThatCannotBeLookedAtIsNotLeftToTheLoader) {
    const TemporaryDirectory folder;
    const std::string path = folder.Write("cut.so", ReadFile(kLibrary).substr(0, 4096));
    const DescriptorLimit none(3);
    std::string reason;
    EXPECT_EQ(nullptr, SharedLibrary::Load(path, reason));
    EXPECT_EQ(path + ": cannot open shared object file: Too many open files", reason);
}

/// Whatever the header says of the segments, reading them goes wrong in no other way than this.
TEST(SharedLibrary, HeaderThatPointsBeyondTheFileIsLeftToTheLoader) {
    const TemporaryDirectory folder;
    std::string library = ReadFile(kLibrary);
    const std::size_t segmentTableOffset = 32;
    library.replace(segmentTableOffset, 8, std::string("\0\0\0\0\0\0\0\x70", 8));
    const std::string path = folder.Write("odd.so", library);
    std::string reason;
    EXPECT_EQ(nullptr, SharedLibrary::Load(path, reason));
    EXPECT_EQ(path + ": cannot read file data", reason);
}

}  // namespace
}  // namespace Corvel::Platform
