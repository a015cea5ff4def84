#include <errno.h>

#include <gtest/gtest.h>

#include "corvel/platform/ErrorText.h"

namespace Corvel::Platform {

namespace {

TEST(ErrorText, IsTheSystemsText) {
    EXPECT_EQ(ErrorText(ENOENT), "No such file or directory");
    EXPECT_EQ(ErrorText(99999), "Unknown error 99999");
}

}  // namespace
}  // namespace Corvel::Platform
