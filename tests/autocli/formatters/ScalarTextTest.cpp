#include <algorithm>
#include <string>

#include <gtest/gtest.h>

#include "corvel/autocli/formatters/ScalarText.h"

namespace Corvel::AutoCli {
namespace {

constexpr EscapeTable kTable{{'"', "&quot;"}, {'\n', "\\n"}};

std::string Repeated(const std::string& piece, std::size_t size) {
    std::string text;
    while (text.size() < size) {
        text += piece;
    }
    return text.substr(0, size);
}

/// Writes with `put` as a formatter does, behind texts of all sizes, so that room runs out at every
/// place, and uses the room that there must be behind the scalar.
template <typename Put>
void ExpectWritten(const std::string& expected, const Put& put) {
    TextBuffer out;
    std::string all;
    for (std::size_t before = 0; before < 300; before += 7) {
        out.Fill(before, '.');
        char* at = put(out, out.Room(kScalarRoom));
        at = std::fill_n(at, kRoomBehind, '!');
        out.EndAt(at);
        all += std::string(before, '.') + expected + std::string(kRoomBehind, '!');
    }
    EXPECT_EQ(all, out.View());
}

TEST(PutText, WritesTextsOfEverySize) {
    for (std::size_t size = 0; size <= 200; ++size) {
        const std::string text = Repeated("some text\n", size);
        ExpectWritten(text, [&](TextBuffer& out, char* at) { return PutText(out, at, text); });
    }
}

TEST(PutText, EscapesTextsOfEverySize) {
    // Nothing to replace, something, and everything, which then needs all the room.
    for (const std::string piece : {"plain", "a \"b\"\n", "\""}) {
        for (std::size_t size = 0; size <= 200; ++size) {
            const std::string text = Repeated(piece, size);
            std::string expected;
            for (const char c : text) {
                expected += c == '"' ? "&quot;" : c == '\n' ? "\\n" : std::string(1, c);
            }
            ExpectWritten(expected, [&](TextBuffer& out, char* at) {
                return PutText<kTable>(out, at, text);
            });
        }
    }
}

TEST(PutBool, WritesOneOfTwoWords) {
    ExpectWritten("true", [](TextBuffer&, char* at) { return PutBool(at, true, "true", "false"); });
    ExpectWritten("false",
                  [](TextBuffer&, char* at) { return PutBool(at, false, "true", "false"); });
}

}  // namespace
}  // namespace Corvel::AutoCli
