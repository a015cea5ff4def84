#include <cstddef>
#include <string>
#include <vector>

#include <boost/regex.hpp>
#include <gtest/gtest.h>

#include "corvel/autocli/formatters/SplitText.h"

namespace Corvel::AutoCli {
namespace {

std::vector<std::string> Pieces(const std::string& text, char separator) {
    std::vector<std::string> pieces;
    ForEachPiece(text, separator, [&](std::string_view piece) { pieces.emplace_back(piece); });
    return pieces;
}

std::vector<std::string> PiecesByRegex(const std::string& text, char separator) {
    const boost::regex expression(std::string(1, separator));
    const boost::sregex_token_iterator begin(text.begin(), text.end(), expression, -1);
    return {begin, boost::sregex_token_iterator()};
}

TEST(ForEachPiece, GivesThePiecesOfARegexTokenIterator) {
    const std::string alphabet("a,\n \0", 5);
    std::size_t compared = 0;
    for (const char separator : {',', '\n', ' '}) {
        // Every text of up to six characters: the digits of a number in base five.
        for (std::size_t length = 0, count = 1; length <= 6; ++length, count *= 5) {
            for (std::size_t number = 0; number < count; ++number) {
                std::string text;
                for (std::size_t i = 0, rest = number; i < length; ++i, rest /= 5) {
                    text += alphabet[rest % 5];
                }
                ASSERT_EQ(Pieces(text, separator), PiecesByRegex(text, separator)) << text;
                ++compared;
            }
        }
    }
    EXPECT_EQ(compared, 3U * 19531);
}

TEST(ForEachPiece, EmptyTextHasNoPieces) {
    EXPECT_TRUE(Pieces("", ',').empty());
}

}  // namespace
}  // namespace Corvel::AutoCli
