#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "corvel/autocli/formatters/EscapeScan.h"

namespace Corvel::AutoCli {
namespace {

constexpr EscapeTable MakeUnprintable() {
    EscapeTable table{{'"', "\\\""}, {'/', "\\/"}};
    for (unsigned byte = 0; byte < 256; ++byte) {
        if (byte < 32 || byte > 126) {
            table.Replace(static_cast<unsigned char>(byte), "<....>");
        }
    }
    return table;
}

/// Everything that is not printable, and some bytes besides.
constexpr EscapeTable kUnprintable = MakeUnprintable();
/// Only single bytes, printable or not.
constexpr EscapeTable kSingle{{'\n', "\\n"}, {'A', "six..6"}, {0x80, "?"}, {0xFF, "end"}};
constexpr EscapeTable kNothing{};

template <const EscapeTable& kTable>
std::string Escaped(std::string_view text) {
    TextBuffer out;
    AppendEscaped<kTable>(out, text);
    return std::string(out.View());
}

template <const EscapeTable& kTable>
std::string EscapedOneByOne(std::string_view text) {
    std::string out;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        std::string replacement(8, '\0');
        replacement.resize(
            static_cast<std::size_t>(kTable.Put(replacement.data(), byte) - replacement.data()));
        out += kTable.Replaces(byte) ? replacement : std::string(1, c);
    }
    return out;
}

/// The last bytes of a page, behind which nothing can be read; what is before them is zero.
class EndOfMemory {
public:
    EndOfMemory()
        : _pageSize(static_cast<std::size_t>(sysconf(_SC_PAGESIZE))),
          _pages(mmap(nullptr,
                      2 * _pageSize,
                      PROT_READ | PROT_WRITE,
                      MAP_PRIVATE | MAP_ANONYMOUS,
                      -1,
                      0)) {
        EXPECT_NE(MAP_FAILED, _pages);
        EXPECT_EQ(0, mprotect(End(), _pageSize, PROT_NONE));
    }
    EndOfMemory(const EndOfMemory&) = delete;
    EndOfMemory& operator=(const EndOfMemory&) = delete;
    ~EndOfMemory() { munmap(_pages, 2 * _pageSize); }

    std::string_view Keep(std::string_view text) {
        return {std::copy(text.begin(), text.end(), End() - text.size()) - text.size(),
                text.size()};
    }

private:
    char* End() { return static_cast<char*>(_pages) + _pageSize; }

    std::size_t _pageSize;
    void* _pages;
};

template <const EscapeTable& kTable>
void ExpectFoundEverywhere(unsigned char byte) {
    const bool isReplaced = kTable.Replaces(byte);
    for (std::size_t size = 0; size <= EscapeScan<kTable>::kMost; ++size) {
        std::string text(size, 'x');
        ASSERT_EQ(0U, EscapeScan<kTable>::Find(text.data(), size));
        for (std::size_t i = 0; i < size; ++i) {
            text[i] = static_cast<char>(byte);
            const std::uint64_t expected = std::uint64_t{isReplaced} << i;
            ASSERT_EQ(expected, EscapeScan<kTable>::Find(text.data(), size)) << size << " " << i;
            ASSERT_EQ(expected, EscapeScan<kTable>::FindOneByOne(text.data(), size));
            text[i] = 'x';
        }
    }
}

TEST(EscapeScan, FindsEveryByteAtEveryPlaceOfEverySize) {
    for (unsigned byte = 0; byte < 256; ++byte) {
        ExpectFoundEverywhere<kUnprintable>(static_cast<unsigned char>(byte));
        ExpectFoundEverywhere<kSingle>(static_cast<unsigned char>(byte));
        ExpectFoundEverywhere<kNothing>(static_cast<unsigned char>(byte));
    }
}

TEST(EscapeScan, FindsWhatIsFoundOneByOneAtEveryAlignment) {
    std::mt19937 random(3);
    for (int run = 0; run < 200; ++run) {
        std::string bytes(64 + 16, ' ');
        for (char& byte : bytes) {
            byte = static_cast<char>(random() % 3 == 0 ? random() : 'a' + random() % 26);
        }
        for (std::size_t begin = 0; begin < 16; ++begin) {
            const char* const text = bytes.data() + begin;
            for (std::size_t size = 0; size <= 64; ++size) {
                ASSERT_EQ(EscapeScan<kUnprintable>::FindOneByOne(text, size),
                          EscapeScan<kUnprintable>::Find(text, size));
                ASSERT_EQ(EscapeScan<kSingle>::FindOneByOne(text, size),
                          EscapeScan<kSingle>::Find(text, size));
            }
        }
    }
}

TEST(AppendEscaped, ReplacesInTextsOfEverySize) {
    std::mt19937 random(5);
    EndOfMemory memory;
    for (const unsigned often : {1U, 2U, 9U, 40U, 1000U}) {
        for (std::size_t size = 0; size <= 200; ++size) {
            std::string bytes(size, ' ');
            for (char& byte : bytes) {
                byte = static_cast<char>(random() % often == 0 ? random() : 'B' + random() % 9);
            }
            const std::string_view text = memory.Keep(bytes);
            ASSERT_EQ(EscapedOneByOne<kUnprintable>(text), Escaped<kUnprintable>(text));
            ASSERT_EQ(EscapedOneByOne<kSingle>(text), Escaped<kSingle>(text));
            ASSERT_EQ(bytes, Escaped<kNothing>(text));
        }
    }
}

TEST(AppendEscaped, AppendsToWhatIsThere) {
    TextBuffer out;
    out += "before ";
    AppendEscaped<kSingle>(out, "A\nB");
    out += " behind";
    EXPECT_EQ("before six..6\\nB behind", out.View());
}

}  // namespace
}  // namespace Corvel::AutoCli
