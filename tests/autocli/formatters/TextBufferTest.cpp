#include <cstring>
#include <sstream>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "corvel/autocli/formatters/OutputBuffer.h"
#include "corvel/autocli/formatters/TextBuffer.h"
#include "tests/autocli/formatters/FormattingSupport.h"

namespace Corvel::AutoCli {
namespace {

std::string Numbered(std::size_t size) {
    std::string text;
    for (std::size_t i = 0; i < size; ++i) {
        text += static_cast<char>('!' + i % 90);
    }
    return text;
}

TEST(TextBuffer, IsEmptyAtFirst) {
    const TextBuffer text;
    EXPECT_EQ(0U, text.Size());
    EXPECT_EQ("", text.View());
}

TEST(TextBuffer, TakesEmptyTexts) {
    TextBuffer text;
    text += std::string_view();
    text += "";
    text.Fill(0, ' ');
    EXPECT_NE(nullptr, text.Room(0));
    EXPECT_EQ("", text.View());
}

TEST(TextBuffer, KeepsWhatWasAppendedWhileItGrows) {
    TextBuffer text;
    std::string expected;
    for (std::size_t i = 0; i < 2000; ++i) {
        const std::string piece = Numbered(i % 71);
        text += piece;
        text += '|';
        text.Fill(i % 37, '.');
        expected += piece + '|' + std::string(i % 37, '.');
    }
    EXPECT_EQ(expected, text.View());
    text.Clear();
    EXPECT_EQ("", text.View());
    text += "again";
    EXPECT_EQ("again", text.View());
}

TEST(TextBuffer, EndsWhereTheWriterSays) {
    TextBuffer text;
    char* const at = text.Room(100);
    std::memset(at, 'x', 100 + TextBuffer::kSlack);
    text.EndAt(at + 3);
    EXPECT_EQ("xxx", text.View());
}

TEST(TextBuffer, RoomIsAlwaysFollowedBySlack) {
    for (std::size_t size = 0; size < 600; ++size) {
        TextBuffer text;
        char* const at = text.Room(size);
        std::memset(at, 'x', size + TextBuffer::kSlack);
        text.EndAt(at + size);
        EXPECT_EQ(std::string(size, 'x'), text.View());
    }
}

TEST(Put, CopiesEverySizeToTheByte) {
    for (std::size_t size = 0; size <= 70; ++size) {
        const std::string text = Numbered(size);
        std::string written(100, '-');
        EXPECT_EQ(written.data() + 5 + size, Put(written.data() + 5, text));
        EXPECT_EQ("-----" + text + std::string(95 - size, '-'), written);
        written.assign(100, '-');
        EXPECT_EQ(written.data() + 5 + size, PutShort(written.data() + 5, text));
        EXPECT_EQ("-----" + text + std::string(95 - size, '-'), written);
    }
}

TEST(Put, BlocksOverwriteNoMoreThanTheSlack) {
    for (std::size_t size = 0; size <= 70; ++size) {
        const std::string text = Numbered(size + TextBuffer::kSlack);
        std::string written(120, '-');
        EXPECT_EQ(written.data() + size,
                  PutBlocks(written.data(), std::string_view(text).substr(0, size)));
        EXPECT_EQ(text.substr(0, size), written.substr(0, size));
        const std::size_t end = size + TextBuffer::kSlack;
        EXPECT_EQ(std::string(120 - end, '-'), written.substr(end));
        written.assign(120, '-');
        EXPECT_EQ(written.data() + size, PutFill(written.data(), size, '+'));
        EXPECT_EQ(std::string(size, '+'), written.substr(0, size));
        EXPECT_EQ(std::string(120 - end, '-'), written.substr(end));
    }
}

TEST(OutputBuffer, WritesNothingBeforeItIsFlushed) {
    std::ostringstream stream;
    OutputBuffer buffer(stream);
    buffer += "some text";
    EXPECT_EQ("", stream.str());
    buffer.Flush();
    EXPECT_EQ("some text", stream.str());
    buffer.Flush();
    EXPECT_EQ("some text", stream.str());
}

TEST(OutputBuffer, LosesNothingAtItsBoundaries) {
    // Sizes around those of the buffer, so that room runs out at every place.
    for (const std::size_t step : {1U, 7U, 4095U, 4096U, 4097U, 65535U, 65536U, 69632U, 200001U}) {
        const std::string piece = Numbered(step);
        std::ostringstream stream;
        OutputBuffer buffer(stream);
        std::string expected;
        while (expected.size() < 600000) {
            buffer += piece;
            buffer += '\n';
            expected += piece + '\n';
        }
        buffer.Flush();
        EXPECT_TRUE(expected == stream.str()) << step;
    }
}

TEST(OutputBuffer, HandsOnWhatIsJustLarge) {
    PieceCounter stream;
    OutputBuffer buffer(stream);
    buffer += Numbered(65536);
    buffer += Numbered(5000);
    EXPECT_EQ(stream.GetPieces(), (std::vector<std::size_t>{65536}));
}

TEST(OutputBuffer, HandsOnLargePieces) {
    for (const std::size_t step : {1U, 100U, 4096U, 5000U, 70000U}) {
        const std::string piece = Numbered(step);
        PieceCounter stream;
        OutputBuffer buffer(stream);
        for (std::size_t size = 0; size < 1000000; size += step) {
            buffer += piece;
        }
        const auto& pieces = stream.GetPieces();
        ASSERT_GE(pieces.size(), 2U) << step;
        for (const std::size_t size : pieces) {
            EXPECT_GE(size, 65536U) << step;
        }
    }
}

}  // namespace
}  // namespace Corvel::AutoCli
