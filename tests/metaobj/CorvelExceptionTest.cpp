#include <exception>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include "corvel/metaobj/CorvelException.h"

namespace Corvel {
namespace {

TEST(CorvelException, KeepsTheMessageOfALiteral) {
    EXPECT_STREQ(CorvelException("Out of paper").what(), "Out of paper");
    EXPECT_STREQ(CorvelException("").what(), "");
}

TEST(CorvelException, NullCountsAsEmptyText) {
    EXPECT_STREQ(CorvelException(static_cast<const char*>(nullptr)).what(), "");
}

TEST(CorvelException, CopiesTheMessageOfAString) {
    std::string message = "Out of paper";
    const CorvelException exception(message);
    message = "changed";
    EXPECT_STREQ(exception.what(), "Out of paper");
}

TEST(CorvelException, TakesAMessageOfAnyLength) {
    const std::string message(100000, 'x');
    EXPECT_EQ(CorvelException(message).what(), message);
}

TEST(CorvelException, IsCaughtAsAStandardException) {
    try {
        throw CorvelException("Out of paper");
    } catch (const std::exception& exception) {
        EXPECT_STREQ(exception.what(), "Out of paper");
    }
}

TEST(CorvelException, CopyCarriesTheSameMessage) {
    const CorvelException first("Out of paper");
    CorvelException second("Out of ink");
    second = first;
    EXPECT_STREQ(second.what(), "Out of paper");
}

static_assert(std::is_base_of_v<std::exception, CorvelException>);
static_assert(!std::is_convertible_v<std::string, CorvelException>);

}  // namespace
}  // namespace Corvel
