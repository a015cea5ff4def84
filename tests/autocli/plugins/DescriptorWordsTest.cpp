#include <cstddef>
#include <set>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "corvel/autocli/plugins/DescriptorWords.h"

namespace Corvel::AutoCli {
namespace {

/// Calls with every word that is spelled.
template <typename Visit>
void ForEachWord(const Visit& visit) {
    for (int number = static_cast<int>(Word::Other) + 1; number <= static_cast<int>(Word::Value);
         ++number) {
        visit(static_cast<Word>(number));
    }
}

TEST(DescriptorWords, EverySpellingLeadsBackToItsWord) {
    std::set<std::string_view> spellings;
    ForEachWord([&spellings](Word word) {
        EXPECT_EQ(word, WordOf(std::string(SpellingOf(word)))) << SpellingOf(word);
        EXPECT_TRUE(spellings.insert(SpellingOf(word)).second) << SpellingOf(word);
    });
    EXPECT_EQ(38u, spellings.size());
    EXPECT_EQ(0u, spellings.count(""));
}

TEST(DescriptorWords, SpellingsThatAreWritten) {
    EXPECT_EQ(Word::TypeName, WordOf("typeName"));
    EXPECT_EQ(Word::ShortName, WordOf("shortname"));
    EXPECT_EQ(Word::ContextSupported, WordOf("context-supported"));
    EXPECT_EQ(Word::MetaDataEntry, WordOf("meta-data-entry"));
    EXPECT_EQ("enum-value", SpellingOf(Word::EnumValue));
    EXPECT_EQ("", SpellingOf(Word::None));
    EXPECT_EQ("", SpellingOf(Word::Other));
}

TEST(DescriptorWords, NothingElseIsAWord) {
    EXPECT_EQ(Word::Other, WordOf(""));
    ForEachWord([](Word word) {
        const std::string spelling(SpellingOf(word));
        for (std::size_t place = 0; place < spelling.size(); ++place) {
            for (const char c : {'_', 'A', '\0', '\xff'}) {
                std::string other = spelling;
                other[place] = c;
                EXPECT_EQ(Word::Other, WordOf(other)) << other;
            }
        }
        EXPECT_EQ(Word::Other, WordOf(spelling + "_"));
        EXPECT_EQ(Word::Other, WordOf(" " + spelling));
    });
    for (int size = 1; size <= 2; ++size) {
        for (int c = 0; c < 256; ++c) {
            EXPECT_EQ(Word::Other,
                      WordOf(std::string(static_cast<std::size_t>(size), static_cast<char>(c))));
        }
    }
}

TEST(DescriptorWords, TextIsKeptWhereItIsAskedFor) {
    for (const Word word : {Word::Bool,
                            Word::ContextSupported,
                            Word::Description,
                            Word::EnumValue,
                            Word::Execute,
                            Word::FormatParameter,
                            Word::Formatter,
                            Word::Int,
                            Word::Other,
                            Word::Regex,
                            Word::Stdin,
                            Word::String,
                            Word::Version}) {
        EXPECT_FALSE(HoldsElementsOnly(word)) << SpellingOf(word);
    }
    for (const Word word : {Word::Command, Word::Enum, Word::Field, Word::Parameter, Word::List}) {
        EXPECT_TRUE(HoldsElementsOnly(word)) << SpellingOf(word);
    }
}

}  // namespace
}  // namespace Corvel::AutoCli
