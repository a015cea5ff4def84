#include <random>
#include <string>

#include <boost/regex.hpp>
#include <gtest/gtest.h>

#include "corvel/metaobj/StructNames.h"

namespace Corvel::MetaObj {
namespace {

bool MatchesThePattern(const std::string& name) {
    static const boost::regex sPattern("[a-zA-Z0-9]+");
    return boost::regex_match(name, sPattern);
}

TEST(IsValidStructName, AcceptsLettersAndDigitsOnly) {
    for (const std::string name : {"a", "Z", "0", "FileSystem2", "9lives"}) {
        EXPECT_TRUE(IsValidStructName(name)) << name;
    }
    for (const std::string name : {"", "_", "a_b", "a-b", " a", "a ", "a\n", "\xC3\xA9"}) {
        EXPECT_FALSE(IsValidStructName(name)) << name;
    }
    EXPECT_FALSE(IsValidStructName(std::string("a\0b", 3)));
}

TEST(IsValidStructName, AgreesWithThePatternOnEveryByte) {
    for (int byte = 0; byte < 256; ++byte) {
        const std::string alone(1, static_cast<char>(byte));
        for (const std::string& name : {alone, alone + "a", "a" + alone, "a" + alone + "Z"}) {
            EXPECT_EQ(IsValidStructName(name), MatchesThePattern(name)) << byte;
        }
    }
    EXPECT_EQ(IsValidStructName(""), MatchesThePattern(""));
}

TEST(IsValidStructName, AgreesWithThePatternOnRandomNames) {
    std::mt19937 random(20260101);  // a fixed seed repeats exactly
    const std::string alphabet("azAZ059_-/:@[`{ \n\0", 18);
    std::uniform_int_distribution<std::size_t> length(0, 6);
    std::uniform_int_distribution<std::size_t> letter(0, alphabet.size() - 1);
    for (int round = 0; round < 20000; ++round) {
        std::string name(length(random), ' ');
        for (char& c : name) {
            c = alphabet[letter(random)];
        }
        ASSERT_EQ(IsValidStructName(name), MatchesThePattern(name)) << name;
    }
}

TEST(IsValidStructName, NullIsTheEmptyName) {
    EXPECT_FALSE(IsValidStructName(nullptr));
    EXPECT_TRUE(IsValidFieldName(nullptr));
}

TEST(IsValidFieldName, AcceptsEverything) {
    for (const std::string name : {"", "a", "a b", "a_b", "\n", "\xFF"}) {
        EXPECT_TRUE(IsValidFieldName(name));
    }
}

}  // namespace
}  // namespace Corvel::MetaObj
