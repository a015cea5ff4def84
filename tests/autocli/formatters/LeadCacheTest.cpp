#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "corvel/autocli/formatters/LeadCache.h"

namespace Corvel::AutoCli {
namespace {

/// Appends name and variant, and counts how often that text is made.
class Leads {
public:
    std::string Lead(std::size_t place, int variant, const std::string& name) {
        return std::string(_cache.Get(place, variant, &name, [&](TextBuffer& lead) {
            ++_made;
            lead += name;
            lead += std::to_string(variant);
        }));
    }
    int Made() const { return _made; }

private:
    LeadCache _cache;
    int _made = 0;
};

TEST(LeadCache, MakesATextOnce) {
    Leads leads;
    const std::string name = "Size";
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ("Size4", leads.Lead(7, 4, name));
    }
    EXPECT_EQ(1, leads.Made());
}

TEST(LeadCache, TellsVariantsApart) {
    Leads leads;
    const std::string name = "Size";
    for (int i = 0; i < 10; ++i) {
        for (int variant = -1; variant < 3; ++variant) {
            EXPECT_EQ("Size" + std::to_string(variant), leads.Lead(7, variant, name));
        }
    }
    EXPECT_EQ(4, leads.Made());
}

TEST(LeadCache, MakesTextsAgainThatShareTheirPlace) {
    Leads leads;
    const std::string first = "First";
    const std::string second = "Second";
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ("First0", leads.Lead(7, 0, first));
        EXPECT_EQ("Second0", leads.Lead(7, 0, second));
    }
    EXPECT_EQ(20, leads.Made());
}

TEST(LeadCache, KnowsNamesByTheirAddress) {
    Leads leads;
    const std::string name = "Size";
    const std::string copy("Size");
    EXPECT_EQ("Size0", leads.Lead(7, 0, name));
    EXPECT_EQ("Size0", leads.Lead(7, 0, copy));
    EXPECT_EQ(2, leads.Made());
}

TEST(LeadCache, RemembersNoLongTexts) {
    // With the digit of the variant, 110 to 115 bytes.
    for (std::size_t size = 109; size <= 114; ++size) {
        Leads leads;
        const std::string name(size, 'n');
        EXPECT_EQ(name + "0", leads.Lead(7, 0, name));
        EXPECT_EQ(name + "0", leads.Lead(7, 0, name));
        EXPECT_EQ(size + 1 <= 112 ? 1 : 2, leads.Made()) << size;
    }
}

TEST(LeadCache, RemembersThatThereIsNoText) {
    LeadCache cache;
    int made = 0;
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ("", cache.Get(7, 0, &made, [&](TextBuffer&) { ++made; }));
    }
    EXPECT_EQ(1, made);
}

TEST(LeadCache, GivesTextsOfEverySizeInWholeBlocks) {
    const std::vector<std::string> names = [] {
        std::vector<std::string> all;
        for (std::size_t size = 0; size < 150; ++size) {
            all.emplace_back(size, static_cast<char>('a' + size % 26));
        }
        return all;
    }();
    LeadCache cache;
    TextBuffer out;
    std::string expected;
    for (int round = 0; round < 3; ++round) {
        for (std::size_t i = 0; i < names.size(); ++i) {
            const auto make = [&](TextBuffer& lead) { lead += names[i]; };
            const std::string_view lead = cache.Get(i, 0, &names[i], make);
            out.EndAt(PutBlocks(out.Room(lead.size()), lead));
            expected += names[i];
        }
    }
    EXPECT_EQ(expected, out.View());
}

}  // namespace
}  // namespace Corvel::AutoCli
