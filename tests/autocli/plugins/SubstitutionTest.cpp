#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "corvel/autocli/plugins/ExtensionCommand.h"
#include "corvel/callspec/Input.h"
#include "corvel/callspec/InputSpec.h"
#include "tests/autocli/plugins/SubstitutionCall.h"
#include "tests/support/ThrownText.h"

namespace Corvel::AutoCli {

namespace {

using CallSpec::Input;
using CallSpec::InputSpec;
using Testing::Call;
using Testing::Expand;
using Testing::NewCall;
using Testing::Values;

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

}  // namespace
}  // namespace Corvel::AutoCli
