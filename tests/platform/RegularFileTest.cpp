#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <array>
#include <string>

#include <gtest/gtest.h>

#include "corvel/platform/RegularFile.h"
#include "tests/support/ProcessState.h"
#include "tests/support/TemporaryDirectory.h"

namespace Corvel::Platform {
namespace {

using Testing::DescriptorLimit;
using Testing::OpenDescriptors;
using Testing::TemporaryDirectory;

std::string ReadAll(const RegularFile& file) {
    std::string text;
    std::array<char, 3> piece;
    long count = 0;
    while ((count = file.Read(piece.data(), piece.size())) > 0) {
        text.append(piece.data(), static_cast<std::size_t>(count));
    }
    EXPECT_EQ(0, count);
    return text;
}

TEST(RegularFile, ReadsInPiecesToTheEnd) {
    const TemporaryDirectory folder;
    const RegularFile file(folder.Write("file", std::string("some\0text", 9)));
    ASSERT_TRUE(file.IsOpen());
    EXPECT_EQ(9, file.Size());
    EXPECT_EQ(std::string("some\0text", 9), ReadAll(file));
}

TEST(RegularFile, ReadsAtAnOffsetWhatIsThere) {
    const TemporaryDirectory folder;
    const RegularFile file(folder.Write("file", "some text"));
    std::array<char, 4> piece = {};
    EXPECT_EQ(4, file.ReadAt(5, piece.data(), piece.size()));
    EXPECT_EQ("text", std::string(piece.data(), piece.size()));
    EXPECT_EQ(3, file.ReadAt(6, piece.data(), piece.size()));
    EXPECT_EQ(0, file.ReadAt(9, piece.data(), piece.size()));
    EXPECT_EQ(-1, file.ReadAt(-1, piece.data(), piece.size()));
    EXPECT_EQ("some text", ReadAll(file));
}

TEST(RegularFile, OnlyRegularFilesAreOpened) {
    const TemporaryDirectory folder;
    const std::string fifo = folder.File("fifo");
    ASSERT_EQ(0, mkfifo(fifo.c_str(), 0600));
    const auto before = OpenDescriptors();
    for (const std::string& path : {fifo,
                                    folder.Path().string(),
                                    std::string("/dev/null"),
                                    folder.File("nosuch"),
                                    std::string(),
                                    folder.Write("file", "x") + std::string(1, '\0')}) {
        const RegularFile file(path);
        EXPECT_FALSE(file.IsOpen()) << path;
        EXPECT_EQ(0, file.Size()) << path;
        char byte = 0;
        EXPECT_EQ(-1, file.Read(&byte, 1)) << path;
        EXPECT_EQ(-1, file.ReadAt(0, &byte, 1)) << path;
        EXPECT_EQ(before, OpenDescriptors()) << path;
    }
}

TEST(RegularFile, TellsWhyItIsNotOpen) {
    const TemporaryDirectory folder;
    const std::string file = folder.Write("file", "x");
    EXPECT_EQ(0, RegularFile(file).Error());
    EXPECT_EQ(EISDIR, RegularFile(folder.Path()).Error());
    EXPECT_EQ(EINVAL, RegularFile("/dev/null").Error());
    EXPECT_EQ(ENOENT, RegularFile(folder.File("nosuch")).Error());
    EXPECT_EQ(ENOENT, RegularFile(file + std::string(1, '\0')).Error());
    EXPECT_EQ(ENOTDIR, RegularFile(file + "/x").Error());
    const DescriptorLimit none(3);
    EXPECT_EQ(EMFILE, RegularFile(file).Error());
}

TEST(RegularFile, ChildrenDoNotInheritIt) {
    const TemporaryDirectory folder;
    const auto before = OpenDescriptors();
    const RegularFile file(folder.Write("file", "x"));
    for (const int descriptor : OpenDescriptors()) {
        if (before.count(descriptor) == 0) {
            EXPECT_EQ(FD_CLOEXEC, fcntl(descriptor, F_GETFD));
        }
    }
    EXPECT_EQ(before.size() + 1, OpenDescriptors().size());
}

}  // namespace
}  // namespace Corvel::Platform
