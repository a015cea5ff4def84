#include <dirent.h>
#include <dlfcn.h>
#include <errno.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "corvel/platform/Directory.h"
#include "tests/support/ProcessState.h"
#include "tests/support/TemporaryDirectory.h"

namespace {

/// How often opendir is still to be interrupted, and after how many entries readdir is to fail.
int interruptionsToCome = 0;
int entriesUntilFailure = -1;

}  // namespace

// These two stand before those of the system.
extern "C" DIR* opendir(const char* name) {
    if (interruptionsToCome > 0) {
        --interruptionsToCome;
        errno = EINTR;
        return nullptr;
    }
    static const auto system = reinterpret_cast<DIR* (*)(const char*)>(dlsym(RTLD_NEXT, "opendir"));
    return system(name);
}

extern "C" dirent* readdir(DIR* directory) {
    if (entriesUntilFailure >= 0 && entriesUntilFailure-- == 0) {
        errno = EIO;
        return nullptr;
    }
    static const auto system = reinterpret_cast<dirent* (*)(DIR*)>(dlsym(RTLD_NEXT, "readdir"));
    return system(directory);
}

namespace Corvel::Platform {
namespace {

using testing::IsEmpty;
using testing::UnorderedElementsAre;

class DirectoryTest : public testing::Test {
protected:
    DirectoryReading Read() { return ReadDirectory(_directory.Path(), _names); }

    Testing::TemporaryDirectory _directory;
    std::vector<std::string> _names;
};

TEST_F(DirectoryTest, EveryNameIsThereButThoseOfTheDirectoryItselfAndItsParent) {
    for (const char* name : {"file", ".hidden", "..more", "...", "folder/inner"}) {
        _directory.Write(name, "");
    }
    ASSERT_EQ(symlink("/nonexistent", _directory.File("link").c_str()), 0);
    EXPECT_EQ(Read(), DirectoryReading::Complete);
    EXPECT_THAT(_names, UnorderedElementsAre("file", ".hidden", "..more", "...", "folder", "link"));
}

TEST_F(DirectoryTest, EmptyDirectoryIsComplete) {
    errno = EIO;
    EXPECT_EQ(Read(), DirectoryReading::Complete);
    EXPECT_THAT(_names, IsEmpty());
}

TEST_F(DirectoryTest, MissingOnesAndFilesAreNotOpened) {
    EXPECT_EQ(ReadDirectory("/nonexistent", _names), DirectoryReading::NotOpened);
    EXPECT_EQ(ReadDirectory("", _names), DirectoryReading::NotOpened);
    EXPECT_EQ(ReadDirectory(_directory.Path().string() + '\0' + "x", _names),
              DirectoryReading::NotOpened);
    EXPECT_EQ(ReadDirectory(_directory.Write("file", ""), _names), DirectoryReading::NotOpened);
}

TEST_F(DirectoryTest, WithoutDescriptorsNobodyKnowsWhetherItIsThere) {
    // Nothing of this object is used meanwhile: to look at it, the sanitizer of clang needs descriptors.
    const std::string path = _directory.Path().string();
    auto names = _names;
    const Testing::DescriptorLimit none(3);
    EXPECT_EQ(ReadDirectory(path, names), DirectoryReading::OutOfReach);
}

TEST_F(DirectoryTest, FailureWhileReadingIsNoEnd) {
    _directory.Write("file", "");
    entriesUntilFailure = 2;
    EXPECT_EQ(Read(), DirectoryReading::Broken);
    entriesUntilFailure = -1;
}

TEST_F(DirectoryTest, InterruptedOpeningIsRepeated) {
    _directory.Write("file", "");
    interruptionsToCome = 3;
    EXPECT_EQ(Read(), DirectoryReading::Complete);
    EXPECT_THAT(_names, UnorderedElementsAre("file"));
}

}  // namespace
}  // namespace Corvel::Platform
