#include <fcntl.h>
#include <sys/ioctl.h>

#include <stdlib.h>

#include <gtest/gtest.h>

#include "corvel/platform/FileDescriptor.h"
#include "corvel/platform/ScreenSize.h"

namespace Corvel::Platform {
namespace {

TEST(ScreenSize, IsThatOfTheTerminal) {
    const FileDescriptor terminal(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC));
    ASSERT_TRUE(terminal.IsOpen());
    winsize size = {};
    size.ws_col = 132;
    size.ws_row = 43;
    ASSERT_EQ(ioctl(terminal.Get(), TIOCSWINSZ, &size), 0);
    std::uint16_t columns = 0;
    std::uint16_t rows = 0;
    EXPECT_TRUE(QueryScreenSize(terminal.Get(), columns, rows));
    EXPECT_EQ(columns, 132);
    EXPECT_EQ(rows, 43);
}

TEST(ScreenSize, IsLeftWhereThereIsNoTerminal) {
    const FileDescriptor file(open("/dev/null", O_RDONLY | O_CLOEXEC));
    std::uint16_t columns = 7;
    std::uint16_t rows = 3;
    EXPECT_FALSE(QueryScreenSize(file.Get(), columns, rows));
    EXPECT_FALSE(QueryScreenSize(-1, columns, rows));
    EXPECT_EQ(columns, 7);
    EXPECT_EQ(rows, 3);
}

}  // namespace
}  // namespace Corvel::Platform
