#include <algorithm>
#include <ctime>
#include <map>
#include <optional>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include <boost/regex.hpp>
#include <gtest/gtest.h>

#include "corvel/autocli/plugins/ExtensionCommand.h"
#include "corvel/callspec/Input.h"
#include "corvel/callspec/InputSpec.h"
#include "corvel/callspec/ParameterSpec.h"
#include "corvel/metaobj/CorvelException.h"
#include "tests/support/ThrownText.h"

namespace Corvel::AutoCli {

namespace {

using CallSpec::Input;
using CallSpec::InputSpec;
using CallSpec::ParameterSpec;
using CallSpec::ParameterType;

/// The parameters of every command here, in declared order.
const std::vector<std::pair<std::string, ParameterType>> kParameters = {
    {"bb", ParameterType::String},
    {"cc", ParameterType::StringList},
    {"dd", ParameterType::String},
    {"ee", ParameterType::Flag},
    {"ff", ParameterType::StringList},
    {"gg", ParameterType::String},
};

using Values = std::map<std::string, std::vector<std::string>>;

struct Call {
    std::shared_ptr<ExtensionCommand> command;
    std::shared_ptr<Input> input;
};

Call NewCall(const std::string& text, const Values& values) {
    const auto spec = InputSpec::New();
    for (const auto& [name, type] : kParameters) {
        spec->AddParameter(ParameterSpec::New(name, type));
    }
    Call call{ExtensionCommand::New(), Input::New()};
    call.command->SetInputSpec(spec);
    call.command->SetExecuteCommand(text);
    call.command->SetStdin(text);
    for (const auto& [name, texts] : values) {
        for (const std::string& value : texts) {
            call.input->AddParameter(name, value);
        }
    }
    call.input->SetInputSpec(spec);
    return call;
}

/// @return the expanded template, or the text of the exception.
std::string Expand(const std::string& text, const Values& values, bool forStdin = false) {
    const Call call = NewCall(text, values);
    try {
        return call.command->SubstituteInput(call.input, forStdin);
    } catch (const CorvelException& e) {
        return std::string("raised: ") + e.what();
    }
}

// --- The same by regular expressions, one step after the other ---------------------------------

/// Expands templates with the expressions themselves, over characters wide enough to let one of
/// them stand for a whole inserted value. With `isPlain` the bytes of a value are inserted instead.
class Reference {
public:
    Reference(const std::string& text, const Call& call, bool forStdin, bool isPlain)
        : _text(Widen(text)), _input(*call.input), _forStdin(forStdin), _isPlain(isPlain) {}

    std::string Expand() {
        if (_text.find(L'$') == std::wstring::npos) {
            return Rendered(_text);
        }
        for (const auto& [name, type] : kParameters) {
            if (_input.HasParameter(name)) {
                const std::wstring wide = Widen(name);
                ReplaceValue(name, wide);
                ReplaceConditional(wide);
                ReplaceList(name, wide);
                ReplaceMultilist(name, wide);
            }
        }
        RemoveConditionals();
        return Rendered(_text);
    }

    /// Whether no inserted value held a character that has a meaning in a template.
    bool IsHarmless() const { return _isHarmless; }

private:
    // A separator is one character, so a value that is longer must not pass for one.
    static constexpr wchar_t kFirstShortValue = 0x10000;
    static constexpr wchar_t kFirstLongValue = 0x20000;

    static std::wstring Widen(const std::string& text) {
        std::wstring wide;
        for (const char c : text) {
            wide += static_cast<wchar_t>(static_cast<unsigned char>(c));
        }
        return wide;
    }

    std::string Rendered(const std::wstring& wide) const {
        std::string text;
        for (const wchar_t c : wide) {
            text += TextOf(c);
        }
        return text;
    }

    std::string TextOf(wchar_t c) const {
        return c < kFirstShortValue ? std::string(1, static_cast<char>(c))
                                    : _values.at(static_cast<std::size_t>(c) % kFirstShortValue);
    }

    std::wstring Inserted(const std::string& value) {
        if (_isPlain) {
            // A separator of the template may have come into the value.
            _isHarmless = _isHarmless && value.find_first_of("${}'") == std::string::npos;
            return Widen(value);
        }
        _values.push_back(value);
        const wchar_t first = value.size() > 1 ? kFirstLongValue : kFirstShortValue;
        return {static_cast<wchar_t>(first + static_cast<wchar_t>(_values.size() - 1))};
    }

    std::string Sanitized(const std::string& value) const {
        return _forStdin ? value : SanitizeInput(value);
    }

    static const boost::wregex& Expression(const std::wstring& pattern) {
        static std::map<std::wstring, boost::wregex> expressions;
        return expressions.try_emplace(pattern, pattern).first->second;
    }

    bool Matches(boost::wsmatch& match, const std::wstring& pattern) const {
        return boost::regex_match(_text, match, Expression(pattern));
    }

    void ReplaceLiterally(const std::wstring& pattern, const std::wstring& replacement) {
        _text = boost::regex_replace(
            _text, Expression(pattern), replacement, boost::regex_constants::format_literal);
    }

    void ReplaceValue(const std::string& name, const std::wstring& wide) {
        const std::wstring token = L"\\$val\\{" + wide + L"\\}";
        boost::wsmatch match;
        if (!Matches(match, L"(.*)" + token + L"(.*)")) {
            return;
        }
        const std::wstring before = match[1];
        const std::wstring after = match[2];
        const std::string value = _input.GetParameter(name);
        const bool isQuoted =
            !before.empty() && before.back() == L'\'' && !after.empty() && after.front() == L'\'';
        ReplaceLiterally(
            token, Inserted(isQuoted && !_forStdin ? SanitizeChar(value, '\'') : Sanitized(value)));
    }

    void ReplaceConditional(const std::wstring& wide) {
        const std::wstring token = L"\\$if\\{" + wide + L",(.+?)\\}";
        boost::wsmatch match;
        if (Matches(match, L".*" + token + L".*")) {
            _text = boost::regex_replace(_text, Expression(token), std::wstring(L"$1"));
        }
    }

    void ReplaceList(const std::string& name, const std::wstring& wide) {
        const std::wstring separatorGroup = L"([^\\x{20000}-\\x{2ffff}]?)";
        const std::wstring token =
            L"\\$list\\{" + wide + L",'" + separatorGroup + L"',(true|false)\\}";
        boost::wsmatch match;
        if (!Matches(match, L".*" + token + L".*")) {
            return;
        }
        std::string separator;
        for (const wchar_t c : std::wstring(match[1])) {
            separator = TextOf(c);
        }
        std::string joined;
        if (separator.empty() && !_forStdin) {
            std::list<std::string> values;
            _input.GetParameterList(name, values);
            for (const std::string& value : values) {
                joined += value;
            }
        } else {
            joined =
                _input.GetParameterListAsString(name, separator.empty() ? '\0' : separator.front());
        }
        const std::wstring quote = match[2] == L"true" && !_forStdin ? L"\"" : L"";
        ReplaceLiterally(token, quote + Inserted(Sanitized(joined)) + quote);
    }

    void ReplaceMultilist(const std::string& name, const std::wstring& wide) {
        const std::wstring token = L"\\$multilist\\{" + wide + L",(.+?),(true|false)\\}";
        boost::wsmatch match;
        if (!Matches(match, L".*" + token + L".*")) {
            return;
        }
        const std::wstring option = match[1];
        const std::wstring quote = match[2] == L"true" ? L"\"" : L"";
        std::list<std::string> values;
        _input.GetParameterList(name, values);
        std::wstring options;
        for (const std::string& value : values) {
            const bool isStripped = !quote.empty() && !_forStdin;
            options.append(L" ").append(option).append(L" ").append(quote);
            options.append(Inserted(isStripped ? SanitizeChar(value, '"') : Sanitized(value)));
            options.append(quote);
        }
        ReplaceLiterally(token, options);
    }

    void RemoveConditionals() {
        const boost::wregex& conditional = Expression(L".*\\$if\\{[a-z0-9-]+,.+?\\}.*");
        if (!boost::regex_match(_text, conditional)) {
            return;
        }
        std::size_t position = 0;
        while ((position = _text.find(L'{', position)) != std::wstring::npos) {
            const std::size_t size = GroupSize(position);
            const std::size_t dollar = _text.rfind(L'$', position);
            const std::size_t length = position + size - dollar;
            if (size == 0) {
                ++position;
            } else if (dollar != std::wstring::npos &&
                       boost::regex_match(_text.substr(dollar, length), conditional)) {
                const std::size_t bytesBefore = Rendered(_text.substr(0, position)).size();
                _text.erase(dollar, length);
                position = dollar;
                while (position < _text.size() &&
                       Rendered(_text.substr(0, position)).size() < bytesBefore) {
                    ++position;
                }
            } else {
                position += size;
            }
        }
    }

    std::size_t GroupSize(std::size_t start) const {
        std::size_t depth = 0;
        for (std::size_t i = start; i < _text.size(); ++i) {
            depth += _text[i] == L'{' ? 1U : 0U;
            depth -= _text[i] == L'}' ? 1U : 0U;
            if (depth == 0) {
                return i + 1 - start;
            }
        }
        return 0;
    }

    std::wstring _text;
    const Input& _input;
    const bool _forStdin;
    const bool _isPlain;
    bool _isHarmless = true;
    std::vector<std::string> _values;
};

/// @return the expanded template, or the text of the exception.
std::string ExpandBy(Reference& reference) {
    try {
        return reference.Expand();
    } catch (const CorvelException& e) {
        return std::string("raised: ") + e.what();
    }
}

/// Makes templates of whole tokens, of parts of tokens and of what stands around them.
class Grammar {
public:
    explicit Grammar(unsigned seed) : _random(seed) {}

    std::string Template(int depth = 3) {
        std::string text;
        for (int count = Below(6); count >= 0; --count) {
            text += depth > 0 && Below(3) == 0 ? Nested(depth - 1) : Fragment();
        }
        return text;
    }

    /// Values for some of the parameters, at most three each, made by value().
    template <class MakeValue>
    Values SomeValues(MakeValue makeValue) {
        Values values;
        for (const auto& [name, type] : kParameters) {
            if (Below(3) == 0) {
                continue;
            }
            const bool isList = type == ParameterType::StringList;
            for (int count = isList ? Below(3) : 0; count >= 0; --count) {
                values[name].push_back(makeValue());
            }
        }
        return values;
    }

    std::string Word(const std::string& alphabet, int shortest) {
        std::string word;
        for (int count = shortest + Below(4 - shortest); count > 0; --count) {
            word += alphabet[static_cast<std::size_t>(Below(static_cast<int>(alphabet.size())))];
        }
        return word;
    }

    int Below(int bound) { return static_cast<int>(_random() % static_cast<unsigned>(bound)); }

private:
    std::string Nested(int depth) {
        switch (Below(6)) {
            case 0:
                return "$multilist{" + Name() + "," + Template(depth) + "," + Flag() + "}";
            case 1:
                return "$list{" + Name() + ",'" + Template(depth) + "'," + Flag() + "}";
            case 2:
                return "{" + Template(depth) + "}";
            default:
                return "$if{" + Name() + "," + Template(depth) + "}";
        }
    }

    std::string Fragment() {
        static const std::vector<std::string> parts = {
            "$",       "{",         "}",      "'",        ",",          "\"",  " ",
            "x",       "1",         "-",      "$if{",     "$i",         "f{",  "$val{",
            "$list{",  ",",         ",true}", ",false}",  "',",         "zz,", "$if{zz,",
            "${HOME}", "\n",        "\1",     "\\",       "$1",         "$&",  "''",
            "$if{}",   "$if{zz,x}", "true}",  "$val{zz}", "$multilist{"};
        switch (Below(8)) {
            case 0:
                return "$val{" + SingleName() + "}";
            case 1:
                return "'$val{" + SingleName() + "}'";
            case 2:
                return "$list{" + Name() + ",'" + Word(",; '", 1).substr(0, 1) + "'," + Flag() +
                       "}";
            case 3:
                return "$list{" + Name() + ",'$val{" + SingleName() + "}'," + Flag() + "}";
            case 4:
                return Name();
            default:
                return AnyOf(parts);
        }
    }

    const std::string& Name() {
        static const std::vector<std::string> names = {"bb", "cc", "dd", "ee", "ff", "gg", "zz"};
        return AnyOf(names);
    }

    /// Mostly of a parameter whose single value can be asked for.
    const std::string& SingleName() {
        static const std::vector<std::string> names = {"bb", "dd", "gg", "zz"};
        return Below(20) == 0 ? Name() : AnyOf(names);
    }

    const std::string& AnyOf(const std::vector<std::string>& words) {
        return words[static_cast<std::size_t>(Below(static_cast<int>(words.size())))];
    }

    std::string Flag() { return Below(2) == 0 ? "true" : "false"; }

    std::mt19937 _random;
};

constexpr unsigned kSeed = 20240521;
constexpr int kRounds = 4000;

std::string Describe(int round, const std::string& text, const Values& values) {
    std::string description = "seed " + std::to_string(kSeed) + ", round " + std::to_string(round) +
                              ", template " + testing::PrintToString(text) + ", values " +
                              testing::PrintToString(values);
    return description;
}

TEST(Substitution, EqualsTheExpressionsOverPlainTextForHarmlessValues) {
    Grammar grammar(kSeed);
    int compared = 0;
    for (int round = 0; round < kRounds; ++round) {
        const std::string text = grammar.Template();
        const Values values =
            grammar.SomeValues([&] { return grammar.Word("ABCDEFGHIJKLMNOPQRSTUVWXYZ", 1); });
        const bool forStdin = grammar.Below(2) == 0;
        const Call call = NewCall(text, values);
        Reference reference(text, call, forStdin, true);
        const std::string expected = ExpandBy(reference);
        if (reference.IsHarmless()) {
            ASSERT_EQ(Expand(text, values, forStdin), expected) << Describe(round, text, values);
            compared += expected.starts_with("raised: ") ? 0 : 1;
        }
    }
    EXPECT_GT(compared, kRounds / 2) << "too few templates were expanded";
}

TEST(Substitution, EqualsTheExpressionsOverOpaqueValuesForAnyValues) {
    Grammar grammar(kSeed + 1);
    for (int round = 0; round < kRounds; ++round) {
        const std::string text = grammar.Template();
        const Values values = grammar.SomeValues([&] {
            return grammar.Below(10) == 0 ? grammar.Template(1)
                                          : grammar.Word("\n!\"$&'()*;<>\\^`|{},ax\1", 0);
        });
        const bool forStdin = grammar.Below(2) == 0;
        const Call call = NewCall(text, values);
        Reference reference(text, call, forStdin, false);
        ASSERT_EQ(Expand(text, values, forStdin), ExpandBy(reference))
            << Describe(round, text, values);
    }
}

// --- Cases by hand -----------------------------------------------------------------------------

struct SubstitutionCase {
    const char* name;
    std::string text;
    Values values;
    std::string expected;
};

void ExpectAll(const std::vector<SubstitutionCase>& cases, bool forStdin) {
    for (const SubstitutionCase& each : cases) {
        EXPECT_EQ(Expand(each.text, each.values, forStdin), each.expected) << each.name;
    }
}

TEST(Substitution, ValueIsEscapedForTheShell) {
    ExpectAll(
        {
            {"bare", "ls $val{dd}", {{"dd", {"a b;rm x"}}}, "ls a b\\;rm x"},
            {"in single quotes", "echo '$val{bb}'", {{"bb", {"it's"}}}, "echo 'its'"},
            {"in single quotes, other bad characters",
             "'$val{bb}'",
             {{"bb", {"$(id)"}}},
             "'$(id)'"},
            {"quote only before", "'$val{bb} ", {{"bb", {"it's"}}}, "'it\\'s "},
            {"quote only after", " $val{bb}'", {{"bb", {"it's"}}}, " it\\'s'"},
            {"nothing around", "$val{bb}", {{"bb", {"it's"}}}, "it\\'s"},
            {"text between quote and token", "'x$val{bb}'", {{"bb", {"it's"}}}, "'xit\\'s'"},
            {"last occurrence decides, quoted",
             "$val{bb} '$val{bb}'",
             {{"bb", {"it's;"}}},
             "its; 'its;'"},
            {"last occurrence decides, bare",
             "'$val{bb}' $val{bb}",
             {{"bb", {"it's;"}}},
             "'it\\'s\\;' it\\'s\\;"},
            {"newline", "$val{bb}", {{"bb", {"a\nb"}}}, "a\\\nb"},
            {"empty value", "<$val{bb}>", {{"bb", {""}}}, "<>"},
            {"format characters are literal",
             "$val{bb}",
             {{"bb", {"$1 \\1 $&"}}},
             "\\$1 \\\\1 \\$\\&"},
            {"several values of a single parameter count as none",
             "<$val{bb}>",
             {{"bb", {"a", "b"}}},
             "<>"},
            {"absent parameter keeps its token", "$val{bb} $val{zz}", {}, "$val{bb} $val{zz}"},
            {"of a list",
             "$val{cc}",
             {{"cc", {"a"}}},
             "raised: Request for GetParameter on a parameter that can have multiple values: cc"},
            {"of a flag",
             "$val{ee}",
             {{"ee", {""}}},
             "raised: Request for GetParameter on a flag type parameter: ee"},
        },
        false);
}

TEST(Substitution, ConditionalIsKeptForGivenParametersOnly) {
    ExpectAll(
        {
            {"absent", "cmd $if{ee,--force} x", {}, "cmd  x"},
            {"given", "cmd $if{ee,--force} x", {{"ee", {""}}}, "cmd --force x"},
            {"every occurrence", "$if{ee,a}-$if{ee,b}", {{"ee", {""}}}, "a-b"},
            {"with a token of its own", "$if{dd,-d '$val{dd}'}", {{"dd", {"v"}}}, "-d 'v'"},
            {"up to the first brace, later parameter inside",
             "$if{bb,x $val{gg}}",
             {{"bb", {"1"}}, {"gg", {"2"}}},
             "x 2"},
            {"up to the first brace, earlier parameter inside",
             "$if{gg,x $val{bb}}",
             {{"bb", {"1"}}, {"gg", {"2"}}},
             "x 1"},
            {"nested, both given", "$if{bb,a$if{gg,b}c}", {{"bb", {""}}, {"gg", {""}}}, "abc"},
            {"nested, none given", "<$if{bb,a$if{gg,b}c}>", {}, "<>"},
            {"brace at the start of the text", "$if{ee,}x}", {{"ee", {""}}}, "}x"},
            {"over newlines", "$if{ee,a\nb}", {{"ee", {""}}}, "a\nb"},
            {"no text", "$if{ee,}", {{"ee", {""}}}, "$if{ee,}"},
            {"token without end", "$if{ee,x", {{"ee", {""}}}, "$if{ee,x"},
        },
        false);
}

TEST(Substitution, ListIsJoined) {
    const Values values = {{"cc", {"1", "2"}}};
    ExpectAll(
        {
            {"quoted", "$list{cc,',',true}", values, "\"1,2\""},
            {"plain", "$list{cc,',',false}", values, "1,2"},
            {"no separator", "$list{cc,'',false}", values, "12"},
            {"bad separator", "$list{cc,';',true}", values, "\"1\\;2\""},
            {"quote as separator", "$list{cc,''',false}", values, "1\\'2"},
            {"newline as separator", "$list{cc,'\n',false}", values, "1\\\n2"},
            {"bad values", "$list{cc,',',true}", {{"cc", {"\"", "$x"}}}, "\"\\\",\\$x\""},
            {"single value", "$list{cc,',',false}", {{"cc", {"1"}}}, "1"},
            {"of a parameter that is no list", "$list{bb,',',true}", {{"bb", {"1"}}}, "\"1\""},
            {"two separators are no token", "$list{cc,',,',true}", values, "$list{cc,',,',true}"},
            {"other word is no token", "$list{cc,',',yes}", values, "$list{cc,',',yes}"},
            {"last token decides", "$list{cc,',',true} $list{cc,'-',false}", values, "1-2 1-2"},
            {"absent", "$list{cc,',',true}", {}, "$list{cc,',',true}"},
            {"separator given by an earlier parameter",
             "$list{cc,'$val{bb}',false}",
             {{"bb", {"+"}}, {"cc", {"1", "2"}}},
             "1+2"},
            {"empty separator given by an earlier parameter",
             "$list{cc,'$val{bb}',false}",
             {{"bb", {""}}, {"cc", {"1", "2"}}},
             "12"},
            {"separator given too long",
             "$list{cc,'$val{bb}',false}",
             {{"bb", {"++"}}, {"cc", {"1", "2"}}},
             "$list{cc,'++',false}"},
        },
        false);
}

TEST(Substitution, MultilistGivesEachValueItsOption) {
    const Values values = {{"cc", {"a", "b"}}};
    ExpectAll(
        {
            {"quoted", "ls$multilist{cc,--path,true}", values, "ls --path \"a\" --path \"b\""},
            {"leading blank", "$multilist{cc,--path,true}", values, " --path \"a\" --path \"b\""},
            {"plain", "$multilist{cc,-p,false}", values, " -p a -p b"},
            {"quoted values lose double quotes only",
             "$multilist{cc,-p,true}",
             {{"cc", {"a\"b$c;"}}},
             " -p \"ab$c;\""},
            {"plain values are escaped",
             "$multilist{cc,-p,false}",
             {{"cc", {"a\"b$c;"}}},
             " -p a\\\"b\\$c\\;"},
            {"comma in the option", "$multilist{cc,-o,x,true}", values, " -o,x \"a\" -o,x \"b\""},
            {"token in the option",
             "$multilist{cc,-$val{bb},false}",
             {{"bb", {"P"}}, {"cc", {"a", "b"}}},
             " -P a -P b"},
            {"later token in the option",
             "$multilist{cc,-$val{gg},false}",
             {{"cc", {"a", "b"}}, {"gg", {"P;"}}},
             " -P\\; a -P\\; b"},
            {"last token decides",
             "$multilist{cc,-x,true}|$multilist{cc,-y,false}",
             values,
             " -y a -y b| -y a -y b"},
            {"first token reaches to the end of the second",
             "$multilist{cc,$multilist{cc,-y,false}",
             {{"cc", {"a"}}},
             " -y a"},
            {"head without tail after the last token",
             "$multilist{cc,-p,false}$multilist{cc,-q",
             values,
             " -p a -p b$multilist{cc,-q"},
            {"no option", "$multilist{cc,,true}", values, "$multilist{cc,,true}"},
            {"comma as option", "$multilist{cc,,,true}", {{"cc", {"a"}}}, " , \"a\""},
            {"no word", "$multilist{cc,-p}", values, "$multilist{cc,-p}"},
            {"absent", "$multilist{cc,-p,true}", {}, "$multilist{cc,-p,true}"},
        },
        false);
}

TEST(Substitution, StdinTemplateGetsValuesAsTheyAre) {
    const std::string bad = "\n!\"$&'()*;<>\\^`|";
    ExpectAll(
        {
            {"value", "<$val{bb}>", {{"bb", {bad}}}, "<" + bad + ">"},
            {"value in quotes", "'$val{bb}'", {{"bb", {"it's"}}}, "'it's'"},
            {"list without quotes in spite of true",
             "$list{cc,',',true}",
             {{"cc", {bad, "x"}}},
             bad + ",x"},
            {"list without separator",
             "$list{cc,'',false}",
             {{"cc", {"a", "b"}}},
             std::string("a\0b", 3)},
            {"list with separator from an empty value",
             "$list{cc,'$val{bb}',false}",
             {{"bb", {""}}, {"cc", {"a", "b"}}},
             std::string("a\0b", 3)},
            {"multilist with quotes for true",
             "$multilist{cc,-p,true}",
             {{"cc", {bad}}},
             " -p \"" + bad + "\""},
            {"multilist without", "$multilist{cc,-p,false}", {{"cc", {bad}}}, " -p " + bad},
            {"conditional", "$if{ee,x}$if{bb,y}", {{"ee", {""}}}, "x"},
        },
        true);
}

TEST(Substitution, InsertedValueIsOpaque) {
    ExpectAll(
        {
            {"later token",
             "$val{bb} $val{gg}",
             {{"bb", {"$val{gg}"}}, {"gg", {"G"}}},
             "$val{gg} G"},
            {"conditional of an absent parameter",
             "$val{bb}",
             {{"bb", {"$if{zz,x}"}}},
             "$if{zz,x}"},
            {"brace that would end a conditional",
             "$if{gg,-$val{bb}-}",
             {{"bb", {"}"}}, {"gg", {""}}},
             "-}-"},
            {"brace that would end a removed group", "<$if{zz,$val{bb}-}>", {{"bb", {"}"}}}, "<>"},
            {"brace that would open a group", "$if{zz,$val{bb}}-", {{"bb", {"{"}}}, "-"},
            {"quotes beside a token",
             "$val{bb}$val{dd}$val{bb}",
             {{"bb", {"'"}}, {"dd", {"it's"}}},
             "'it's'"},
            {"empty value as text of a conditional",
             "<$if{gg,$val{bb}}>",
             {{"bb", {""}}, {"gg", {""}}},
             "<>"},
            {"empty value as option",
             "$multilist{cc,$val{bb},true}",
             {{"bb", {""}}, {"cc", {"a"}}},
             "  \"a\""},
            {"name put together", "$val{$val{bb}}", {{"bb", {"gg"}}, {"gg", {"G"}}}, "$val{gg}"},
            {"tail put together",
             "$list{cc,',',$val{bb}}",
             {{"bb", {"true"}}, {"cc", {"1"}}},
             "$list{cc,',',true}"},
        },
        true);
}

TEST(Substitution, TemplateWithoutDollarIsUnchangedAndNeedsNoSpecification) {
    const auto command = ExtensionCommand::New();
    EXPECT_EQ(command->SubstituteInput(nullptr, false), "");
    command->SetExecuteCommand("ls {x} '}'");
    command->SetStdin("in");
    EXPECT_EQ(command->SubstituteInput(nullptr, false), "ls {x} '}'");
    EXPECT_EQ(command->SubstituteInput(nullptr, true), "in");
}

TEST(Substitution, NullInputHoldsNoParameters) {
    const Call call = NewCall("$val{bb}$if{bb,x}", {});
    EXPECT_EQ(call.command->SubstituteInput(nullptr, false), "$val{bb}");
}

TEST(Substitution, InputWithoutSpecificationGivesItsSingleValues) {
    const Call call = NewCall("$val{bb} $val{cc}", {});
    const auto input = Input::New();
    input->AddParameter("bb", "one;");
    input->AddParameter("cc", "a");
    EXPECT_EQ(call.command->SubstituteInput(input, false), "one\\; a");
    input->AddParameter("cc", "b");
    EXPECT_EQ(call.command->SubstituteInput(input, false), "one\\; ");
}

TEST(Substitution, InputWithAnotherSpecificationRaisesForItsUnknownParameter) {
    const Call call = NewCall("$val{bb}", {});
    const auto input = Input::New();
    input->AddParameter("bb", "one");
    input->SetInputSpec(InputSpec::New());
    EXPECT_EQ(Testing::ThrownText([&] { call.command->SubstituteInput(input, false); }),
              "Request for unknown parameter: bb");
}

TEST(Substitution, HelpIsAParameterToo) {
    const Call call = NewCall("$if{help,x}", {});
    const auto input = Input::New();
    input->AddParameter("help", "true");
    EXPECT_EQ(call.command->SubstituteInput(input, false), "x");
}

// --- Size --------------------------------------------------------------------------------------

std::string Repeat(std::size_t count, const std::string& text) {
    std::string repeated;
    repeated.reserve(count * text.size());
    for (std::size_t i = 0; i < count; ++i) {
        repeated += text;
    }
    return repeated;
}

TEST(Substitution, TakesLinearTimeForTemplatesOfAMegabyte) {
    constexpr std::size_t kMegabyte = 1 << 20;
    const std::vector<std::string> units = {"$val{bb}",
                                            "'$val{bb}'",
                                            "$val{bb",
                                            "$if{bb,x}",
                                            "$if{bb,",
                                            "$if{zz,x}",
                                            "$if{zz,",
                                            "$if{zz,}",
                                            "}",
                                            "{",
                                            "$",
                                            "'",
                                            ",",
                                            "{}",
                                            "$list{cc,',',true}",
                                            "$list{cc,',",
                                            "$list{cc,'",
                                            "$multilist{cc,-p,true}",
                                            "$multilist{cc,-p,false}",
                                            "$multilist{cc,",
                                            "$multilist{cc,,",
                                            ",true}",
                                            "$if{zz,$val{bb}"};
    const Values values = {{"bb", {"value"}}, {"cc", {"a", "b"}}};
    for (const std::string& unit : units) {
        const std::string body = Repeat(kMegabyte / unit.size(), unit);
        for (const std::string& text : {"$" + body, body + ",true}$if{zz,x}"}) {
            // Processor time: what else the machine does must not count.
            const std::clock_t start = std::clock();
            Expand(text, values);
            EXPECT_LT(std::clock() - start, 10 * CLOCKS_PER_SEC) << unit;
        }
    }
}

TEST(Substitution, ConditionalsNestHoweverDeep) {
    constexpr std::size_t kDepth = 100000;
    const std::string text =
        "<" + Repeat(kDepth, "$if{zz,") + "$val{bb}" + Repeat(kDepth, "}") + ">";
    EXPECT_EQ(Expand(text, {{"bb", {"v"}}}), "<>");
    // The first token takes the first brace; what is left of the others goes as one group.
    EXPECT_EQ(Expand(Repeat(kDepth, "$if{ee,") + "x" + Repeat(kDepth, "}"), {{"ee", {""}}}), "");
}

TEST(Substitution, LargeValuesAreInsertedWhole) {
    const std::string large(2 << 20, ';');
    EXPECT_EQ(Expand("$val{bb}|$val{bb}", {{"bb", {large}}}, true), large + "|" + large);
    EXPECT_EQ(Expand("$val{bb}", {{"bb", {large}}}).size(), 2 * large.size());
}

}  // namespace
}  // namespace Corvel::AutoCli
