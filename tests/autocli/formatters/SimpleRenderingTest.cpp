#include <cstddef>
#include <string>

#include <boost/regex.hpp>
#include <gtest/gtest.h>

#include "corvel/autocli/formatters/SimpleRendering.h"

namespace Corvel::AutoCli {
namespace {

std::string TagByRegex(const std::string& header) {
    static const boost::regex expression(".*%(.+)%.*");
    boost::smatch match;
    return boost::regex_match(header, match, expression) ? match[1].str() : std::string();
}

TEST(FindHeaderTag, CapturesWhatTheRegularExpressionDoes) {
    const std::string alphabet("a%\n\0", 4);
    std::size_t withTag = 0;
    // Every text of up to eight characters: the digits of a number in base four.
    for (std::size_t length = 0, count = 1; length <= 8; ++length, count *= 4) {
        for (std::size_t number = 0; number < count; ++number) {
            std::string header;
            for (std::size_t i = 0, rest = number; i < length; ++i, rest /= 4) {
                header += alphabet[rest % 4];
            }
            ASSERT_EQ(FindHeaderTag(header), TagByRegex(header)) << header;
            withTag += static_cast<std::size_t>(!FindHeaderTag(header).empty());
        }
    }
    EXPECT_GT(withTag, 10000U);
}

TEST(FindHeaderTag, TakesLinearTime) {
    const std::string percents(1000000, '%');
    EXPECT_EQ(FindHeaderTag(percents), "%");
    EXPECT_EQ(FindHeaderTag("%" + std::string(1000000, 'a')), "");
}

}  // namespace
}  // namespace Corvel::AutoCli
