#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "corvel/autocli/plugins/ShellCommand.h"
#include "corvel/autocli/plugins/ShellGuard.h"
#include "tests/guard/Alphabet.h"
#include "tests/guard/AttackGrammar.h"
#include "tests/guard/Corpus.h"
#include "tests/guard/Shells.h"
#include "tests/support/ExpandedTemplate.h"
#include "tests/support/TemporaryDirectory.h"

namespace Corvel::Testing {

namespace {

/// So many lines go to one shell.
constexpr std::size_t kLinesOfAShell = 200;

std::vector<std::string> Values() {
    std::vector<std::string> values = {
        "", "it's", std::string(90000, '\''), std::string(90000, 'a')};
    for (int byte = 1; byte < 256; ++byte) {
        values.emplace_back(1, static_cast<char>(byte));
    }
    for (const std::string& first : Alphabet()) {
        for (const std::string& second : Alphabet()) {
            values.push_back(first + second);
        }
    }
    AttackGrammar grammar(7);
    for (int i = 0; i < 1000; ++i) {
        values.push_back(grammar.Value());
    }
    return values;
}

std::string Without(std::string text, char unwanted) {
    std::erase(text, unwanted);
    return text;
}

/// Calls use(first, last) for one part of the values after the other.
template <class Use>
void ForParts(const std::vector<std::string>& values, Use use) {
    for (std::size_t first = 0; first < values.size();) {
        std::size_t last = first;
        std::size_t size = 0;
        while (last < values.size() && last - first < kLinesOfAShell && size < 50000) {
            size += values[last++].size();
        }
        use(std::vector<std::string>(values.begin() + static_cast<std::ptrdiff_t>(first),
                                     values.begin() + static_cast<std::ptrdiff_t>(last)));
        first = last;
    }
}

class Delivery : public testing::TestWithParam<Shell> {
protected:
    Canaries canaries{{"id", "zz"}};
    Aviary aviary{GetParam(), canaries};
};

TEST_P(Delivery, QuotedValueIsOneWordWithoutItsQuotes) {
    ForParts(Values(), [&](const std::vector<std::string>& values) {
        std::string script;
        std::string expected;
        for (const std::string& value : values) {
            const AutoCli::TemplateText line = Expanded(
                "set -- '$val{aa}'; printf '%s:%s\\0' \"$#\" \"$1\"\n", {{kFirst, {value}}});
            EXPECT_NO_THROW(AutoCli::RefuseUnsafeValues(line));
            script += line.Render();
            expected += "1:" + Without(value, '\'') + '\0';
        }
        EXPECT_EQ(aviary.Output(script), expected);
    });
}

TEST_P(Delivery, UserNameIsWhatItIs) {
    static std::string heard;
    AutoCli::SetCommandExecListener([](const std::string& line, int) { heard = line; });
    std::vector<std::string> names = Values();
    std::erase_if(names,
                  [](const std::string& name) { return name.empty() || name.size() > 50000; });
    // Each name costs a process of its own, twice.
    std::shuffle(names.begin() + 255, names.end(), std::mt19937(11));
    names.resize(500);
    ForParts(names, [&](const std::vector<std::string>& part) {
        std::string script;
        std::string expected;
        for (const std::string& name : part) {
            std::string output;
            AutoCli::AutoCli_ShellCmdWithQuenUsername("printenv QUEN_USERNAME", name, output, "");
            EXPECT_EQ(output, name + "\n");
            script += heard + "\n";
            expected += name + "\n";
        }
        EXPECT_EQ(aviary.Output(script), expected);
    });
    AutoCli::SetCommandExecListener(nullptr);
}

std::string NameOf(const testing::TestParamInfo<Shell>& shell) {
    return shell.param.name;
}

INSTANTIATE_TEST_SUITE_P(Shells, Delivery, testing::ValuesIn(Shells()), NameOf);

TEST(StandardInput, GetsEveryByte) {
    constexpr std::size_t kSize = 1 << 20;
    std::mt19937 random(3);
    std::string value;
    for (std::size_t i = 0; i < kSize; ++i) {
        value += static_cast<char>(random());
    }
    const std::string input =
        Expanded("a $val{aa} '$val{bb}' $list{ll,'',true}\n$multilist{ll,-x,true}",
                 {{kFirst, {value}}, {kSecond, {"it's"}}, {kList, {"b", value}}},
                 AutoCli::TemplateUse::StandardInput)
            .Render();
    const std::string nul(1, '\0');
    EXPECT_EQ(input, "a " + value + " 'it's' b" + nul + value + "\n -x \"b\" -x \"" + value + "\"");
    const TemporaryDirectory directory;
    std::string output;
    AutoCli::AutoCli_ShellCmd("cat >" + directory.File("got") + "; printf x", output, input);
    EXPECT_EQ(output, "x");
    EXPECT_EQ(ReadFile(directory.File("got")), input);
}

TEST(TemplateText, StaysAsItIsOutsideOfTokens) {
    std::mt19937 random(5);
    const auto randomText = [&] {
        std::string bytes;
        for (std::size_t count = random() % 20; count > 0; --count) {
            const char byte = static_cast<char>(random());
            bytes += byte == '$' ? '{' : byte;
        }
        return bytes;
    };
    for (int i = 0; i < 20000; ++i) {
        const std::string before = randomText();
        const std::string between = randomText();
        const std::string behind = randomText();
        std::string text = before;
        text.append("$val{aa}").append(between).append("$list{ll,',',false}").append(behind);
        std::string expected = before;
        expected.append("12").append(between).append("3,4").append(behind);
        const std::string line = Expanded(text, {{kFirst, {"12"}}, {kList, {"3", "4"}}}).Render();
        ASSERT_EQ(line, expected);
    }
}

}  // namespace

}  // namespace Corvel::Testing
