#include <cstdlib>
#include <cstring>
#include <malloc.h>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "corvel/platform/Platform.h"

namespace {

bool IsValid(const std::string& text) {
    return Unicode_IsBufferValid(text.data(), static_cast<long>(text.size()), kUnicodeEncodingUtf8);
}

std::string Escaped(const char* buffer, long length) {
    struct Free {
        void operator()(char* text) const { std::free(text); }
    };
    const std::unique_ptr<char, Free> escaped(
        Unicode_EscapeBuffer(buffer, length, kUnicodeEncodingUtf8));
    return escaped.get();
}

std::string Escaped(const std::string& text) {
    return Escaped(text.data(), static_cast<long>(text.size()));
}

std::string ByteText(int byte) {
    return std::string(1, static_cast<char>(byte));
}

// How a decoder that forms the character and looks at it afterwards answers.
bool IsValidByDecoding(const std::string& text) {
    for (std::size_t i = 0; i < text.size();) {
        const auto lead = static_cast<unsigned char>(text[i]);
        const std::size_t length = lead < 0x80             ? 1
                                   : (lead & 0xE0) == 0xC0 ? 2
                                   : (lead & 0xF0) == 0xE0 ? 3
                                   : (lead & 0xF8) == 0xF0 ? 4
                                                           : 0;
        if (length == 0 || i + length > text.size()) {
            return false;
        }
        unsigned long character = length == 1 ? lead : lead & (0xFFU >> (length + 1));
        for (std::size_t k = 1; k < length; ++k) {
            const auto byte = static_cast<unsigned char>(text[i + k]);
            if ((byte & 0xC0) != 0x80) {
                return false;
            }
            character = character << 6 | (byte & 0x3FU);
        }
        constexpr unsigned long kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
        const bool isSurrogate = character >= 0xD800 && character <= 0xDFFF;
        if (character < kSmallest[length] || isSurrogate || character > 0x10FFFF) {
            return false;
        }
        i += length;
    }
    return true;
}

TEST(UnicodeIsBufferValid, AcceptsTheFirstAndLastCharacterOfEveryLength) {
    for (const char* text : {"",
                             "a",
                             "\x7F",
                             "\xC2\x80",
                             "\xDF\xBF",
                             "\xE0\xA0\x80",
                             "\xED\x9F\xBF",
                             "\xEE\x80\x80",
                             "\xEF\xBF\xBF",
                             "\xF0\x90\x80\x80",
                             "\xF4\x8F\xBF\xBF"}) {
        EXPECT_TRUE(IsValid(text)) << text;
    }
    EXPECT_TRUE(IsValid(std::string(1, '\0')));
}

TEST(UnicodeIsBufferValid, RefusesWhatIsNoCharacter) {
    const struct {
        const char* name;
        const char* text;
    } cases[] = {
        {"lone continuation", "\x80"},
        {"continuation after a character", "\xC3\xA9\xA9"},
        {"overlong two bytes", "\xC0\x80"},
        {"overlong two bytes, last", "\xC1\xBF"},
        {"overlong three bytes", "\xE0\x9F\xBF"},
        {"overlong four bytes", "\xF0\x8F\xBF\xBF"},
        {"first surrogate", "\xED\xA0\x80"},
        {"last surrogate", "\xED\xBF\xBF"},
        {"above U+10FFFF", "\xF4\x90\x80\x80"},
        {"lead byte F5", "\xF5\x80\x80\x80"},
        {"byte FF", "\xFF"},
        {"cut after one of two", "\xC3"},
        {"cut after two of three", "\xE2\x82"},
        {"cut after three of four", "\xF0\x9F\x98"},
        {"lead byte before a letter", "\xC3x"},
        {"third byte is a letter", "\xE2\x82x"},
    };
    for (const auto& [name, text] : cases) {
        EXPECT_FALSE(IsValid(text)) << name;
        EXPECT_FALSE(IsValid(std::string("twelve bytes") + text)) << name;
        EXPECT_FALSE(IsValid(text + std::string("twelve bytes"))) << name;
    }
}

TEST(UnicodeIsBufferValid, AgreesWithADecoderOnEveryPairOfBytes) {
    for (int first = 0; first < 256; ++first) {
        for (int second = 0; second < 256; ++second) {
            const std::string pair = ByteText(first) + ByteText(second);
            for (const std::string& text :
                 {pair, pair + "\x80", pair + "\xBF\x80", "12345678" + pair}) {
                ASSERT_EQ(IsValid(text), IsValidByDecoding(text)) << first << ' ' << second;
            }
        }
    }
}

TEST(UnicodeIsBufferValid, LengthMinusOneMeansUpToTheNul) {
    EXPECT_TRUE(Unicode_IsBufferValid("a\0\xFF", -1, kUnicodeEncodingUtf8));
    EXPECT_FALSE(Unicode_IsBufferValid("a\0\xFF", 3, kUnicodeEncodingUtf8));
    EXPECT_FALSE(Unicode_IsBufferValid("a\xFF", -1, kUnicodeEncodingUtf8));
}

TEST(UnicodeIsBufferValid, LooksAtNoMoreThanItsLength) {
    EXPECT_TRUE(Unicode_IsBufferValid("a\xFF", 1, kUnicodeEncodingUtf8));
    EXPECT_FALSE(Unicode_IsBufferValid("\xC3\xA9", 1, kUnicodeEncodingUtf8));
    EXPECT_TRUE(Unicode_IsBufferValid("\xFF", 0, kUnicodeEncodingUtf8));
}

TEST(UnicodeIsBufferValid, NullIsTheEmptyText) {
    EXPECT_TRUE(Unicode_IsBufferValid(nullptr, -1, kUnicodeEncodingUtf8));
    EXPECT_TRUE(Unicode_IsBufferValid(nullptr, 0, kUnicodeEncodingUtf8));
}

TEST(UnicodeEscapeBuffer, CopiesWellFormedText) {
    for (const char* text : {"", "plain", "na\xC3\xAFve \xE2\x82\xAC \xF0\x9F\x98\x80", "\\xff"}) {
        EXPECT_EQ(Escaped(text), text);
    }
}

TEST(UnicodeEscapeBuffer, WritesEveryStrayByteAsTwoLowerCaseDigits) {
    EXPECT_EQ(Escaped("\xFF"), "\\xff");
    EXPECT_EQ(Escaped("a\x80z"), "a\\x80z");
    EXPECT_EQ(Escaped("\xC3\xA9\xA9"), "\xC3\xA9\\xa9");
    EXPECT_EQ(Escaped("\xC0\x80"), "\\xc0\\x80");
    EXPECT_EQ(Escaped("\xED\xA0\x80"), "\\xed\\xa0\\x80");
    EXPECT_EQ(Escaped("\xE2\x82"), "\\xe2\\x82");
    EXPECT_EQ(Escaped("\xE2\x82\xC3\xA9"), "\\xe2\\x82\xC3\xA9");
    EXPECT_EQ(Escaped("\xF4\x90\x80\x80"), "\\xf4\\x90\\x80\\x80");
}

TEST(UnicodeEscapeBuffer, AnswersWellFormedTextForEveryPairOfBytes) {
    for (int first = 1; first < 256; ++first) {
        for (int second = 1; second < 256; ++second) {
            const std::string pair = ByteText(first) + ByteText(second);
            const std::string escaped = Escaped(pair);
            ASSERT_TRUE(IsValid(escaped)) << first << ' ' << second;
            ASSERT_EQ(escaped == pair, IsValid(pair)) << first << ' ' << second;
        }
    }
}

TEST(UnicodeEscapeBuffer, RoomHoldsTheTextAndItsNul) {
    for (std::size_t size = 0; size < 100; ++size) {
        const std::string text(size, size % 3 == 0 ? '\xff' : 'a');
        char* const escaped = Unicode_EscapeBuffer(text.data(), static_cast<long>(size), 0);
        EXPECT_GT(malloc_usable_size(escaped), std::strlen(escaped)) << size;
        std::free(escaped);
    }
}

TEST(UnicodeEscapeBuffer, EscapesBeyondEightByteBlocks) {
    EXPECT_EQ(Escaped(std::string(100, 'a') + "\xFE" + std::string(100, 'b')),
              std::string(100, 'a') + "\\xfe" + std::string(100, 'b'));
}

TEST(UnicodeEscapeBuffer, LengthMinusOneMeansUpToTheNul) {
    EXPECT_EQ(Escaped("a\xFF\0b", -1), "a\\xff");
    EXPECT_EQ(Escaped("a\xFF", 1), "a");
}

TEST(UnicodeEscapeBuffer, NullIsTheEmptyText) {
    EXPECT_EQ(Escaped(nullptr, -1), "");
}

}  // namespace
