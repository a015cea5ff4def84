#include <algorithm>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tests/guard/Alphabet.h"
#include "tests/guard/AttackGrammar.h"
#include "tests/guard/Corpus.h"
#include "tests/guard/Range.h"
#include "tests/guard/Shells.h"
#include "tests/support/ExpandedTemplate.h"

namespace Corvel::Testing {

namespace {

/// A number that the soak run sets through the environment.
std::size_t Setting(const char* variable, std::size_t usual) {
    const char* text = std::getenv(variable);
    return text == nullptr ? usual : std::stoul(text);
}

/// The tests are divided into so many, which run at once.
constexpr std::size_t kSlices = 8;

/// The names under which attacks find the canary: those of programs, and what short values spell.
std::vector<std::string> CanaryNames() {
    std::vector<std::string> names = {"id", "zz"};
    std::vector<std::string> shortNames;
    for (const std::string& symbol : Alphabet()) {
        if (symbol != "/") {
            shortNames.push_back(symbol);
        }
    }
    names.insert(names.end(), shortNames.begin(), shortNames.end());
    for (const std::string& first : shortNames) {
        for (const std::string& second : shortNames) {
            names.push_back(first + second);
        }
    }
    std::erase_if(names, [](const std::string& name) {
        return name == "." || name == ".." || name.find('\n') != std::string::npos;
    });
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
}

bool Names(const std::string& text, const std::string& parameter) {
    return text.find("{" + parameter + "}") != std::string::npos ||
           text.find("{" + parameter + ",") != std::string::npos;
}

/// Tries one value, in each parameter that the template has.
void AttemptValue(Range& range, const std::string& text, const std::string& value) {
    range.Attempt(text, {{kFirst, {value}}, {kSecond, {value}}, {kList, {value}}});
    if (Names(text, kFirst) && Names(text, kSecond)) {
        range.Attempt(text, {{kFirst, {""}}, {kSecond, {value}}});
        range.Attempt(text, {{kFirst, {"a"}}, {kSecond, {value}}});
        range.Attempt(text, {{kFirst, {value}}, {kSecond, {"id"}}});
    }
    if (Names(text, kList)) {
        range.Attempt(text, {{kFirst, {"id"}}, {kList, {value, "id"}}});
        range.Attempt(text, {{kFirst, {"id"}}, {kList, {"", value, value}}});
    }
}

/// Calls use() with every value of up to so many symbols.
void ForShortValues(std::size_t length,
                    const std::function<void(const std::string&)>& use,
                    const std::string& value = {}) {
    use(value);
    for (const std::string& symbol : Alphabet()) {
        if (length > 0) {
            ForShortValues(length - 1, use, value + symbol);
        }
    }
}

class Injection : public testing::TestWithParam<std::size_t> {};

TEST_P(Injection, NoShortValueRunsAnything) {
    const std::size_t length = Setting("CORVEL_GUARD_LENGTH", 2);
    Range range(CanaryNames());
    for (std::size_t i = GetParam(); i < Corpus().size(); i += kSlices) {
        const GuardedTemplate& guarded = Corpus()[i];
        if (!guarded.runsValue) {
            ForShortValues(length - (guarded.isSlow ? 1 : 0), [&](const std::string& value) {
                AttemptValue(range, guarded.text, value);
            });
            range.Run(guarded.text);
        }
    }
}

TEST_P(Injection, NoAttackRunsAnything) {
    const std::size_t attacks = Setting("CORVEL_GUARD_ATTACKS", 20000) / kSlices;
    const std::size_t seed = Setting("CORVEL_GUARD_SEED", 1) + GetParam();
    std::cout << "CORVEL_GUARD_SEED=" << seed - GetParam() << "\n";
    RecordProperty("seed", static_cast<int>(seed));
    constexpr std::size_t kValuesOfATemplate = 25;
    AttackGrammar grammar(static_cast<unsigned>(seed));
    Range range(CanaryNames());
    for (std::size_t done = 0; done < attacks;) {
        const bool isFixed = grammar.Below(2) == 0;
        const std::string text =
            isFixed ? Corpus()[grammar.Below(Corpus().size())].text : grammar.Template();
        if (range.IsUnfit(text)) {
            continue;
        }
        for (std::size_t i = 0; i < kValuesOfATemplate; ++i, ++done) {
            range.Attempt(text,
                          {{kFirst, {grammar.Value()}},
                           {kSecond, {grammar.Value()}},
                           {kList, {grammar.Value(), grammar.Value()}}});
        }
        range.Run(text);
    }
}

INSTANTIATE_TEST_SUITE_P(Slices, Injection, testing::Range<std::size_t>(0, kSlices));

/// Attacks that a shell falls for without the guard.
struct Attack {
    std::string text;
    CallValues values;
};

const std::vector<Attack>& Attacks() {
    static const std::vector<Attack> attacks = {
        {": $multilist{path,--path,true}", {{"path", {"$(id)"}}}},
        {": $val{aa}", {{"aa", {"#\nid"}}}},
        {"echo \"n '$val{aa}'\"", {{"aa", {"$(id)"}}}},
        {"test -d $val{aa} && : '$val{aa}'", {{"aa", {";id;#"}}}},
        {": `: $val{aa}`", {{"aa", {"\\;id"}}}},
        {": 'x $val{aa}' '$val{bb}'", {{"aa", {"'"}}, {"bb", {";id;#"}}}},
        {"$val{aa} '$val{bb}'", {{"aa", {""}}, {"bb", {"id"}}}},
        {"a=$val{aa}; :", {{"aa", {"b id"}}}},
        {"# '$val{aa}'", {{"aa", {"\nid #"}}}},
        {"sh $val{aa} '$val{bb}'", {{"aa", {"-c"}}, {"bb", {"id"}}}},
        {": 'a'$val{aa}'b'", {{"aa", {";id;"}}}},
        {"cat <<E\n$val{aa}\nid\nE", {{"aa", {"E"}}}},
    };
    return attacks;
}

class Canary : public testing::TestWithParam<Shell> {};

TEST_P(Canary, RunsWithoutTheGuard) {
    const Canaries canaries({"id"});
    Aviary aviary(GetParam(), canaries);
    for (const Attack& attack : Attacks()) {
        const AutoCli::TemplateText line = Expanded(attack.text, attack.values);
        EXPECT_EQ(aviary.Run(line.Render()), std::vector<std::string>{"id"}) << attack.text;
        EXPECT_TRUE(IsRefused(line)) << attack.text;
    }
}

TEST_P(Canary, IsFoundAmongManyLines) {
    const Canaries canaries({"id"});
    Aviary aviary(GetParam(), canaries);
    const std::vector<std::string> harmless(60, ": a");
    const std::vector<std::pair<std::string, std::size_t>> cases = {
        {"id", 40},
        {": `id`", 40},
        {"(id) &", 40},
        {": 'a\nid", 60},
        {"PATH=; : a", 60},
        {"if", 60},
        {": \\", 60},
        {"cat <<E", 60},
    };
    for (const auto& [line, found] : cases) {
        std::vector<std::string> lines = harmless;
        lines[40] = line;
        lines[50] = "'\n";
        lines.push_back("id");
        const Aviary::Flight flight = aviary.RunAll(lines);
        EXPECT_EQ(flight.line, found) << line;
        EXPECT_EQ(flight.canaries, std::vector<std::string>{"id"}) << line;
    }
    EXPECT_EQ(aviary.RunAll(harmless).line, harmless.size());
}

/// What the template itself makes a command is one, and nothing else is.
TEST_P(Canary, RunsWhereTheTemplateWantsItAlone) {
    const Canaries canaries(CanaryNames());
    Aviary aviary(GetParam(), canaries);
    for (const GuardedTemplate& guarded : Corpus()) {
        if (!guarded.runsValue) {
            continue;
        }
        ForShortValues(1, [&](const std::string& value) {
            const AutoCli::TemplateText line =
                Expanded(guarded.text, {{kFirst, {value}}, {kSecond, {"id"}}});
            if (!IsRefused(line)) {
                for (const std::string& name : aviary.Run(line.Render())) {
                    EXPECT_EQ(name, value) << guarded.text;
                }
            }
        });
    }
}

std::string NameOf(const testing::TestParamInfo<Shell>& shell) {
    return shell.param.name;
}

INSTANTIATE_TEST_SUITE_P(Shells, Canary, testing::ValuesIn(Shells()), NameOf);

}  // namespace

}  // namespace Corvel::Testing
