#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "corvel/autocli/plugins/ShellGuard.h"
#include "corvel/metaobj/CorvelException.h"
#include "tests/support/ExpandedTemplate.h"

namespace Corvel::AutoCli {

namespace {

using Testing::CallValues;

/// @return what is raised, or nothing.
std::string Verdict(const std::string& text, const CallValues& values) {
    try {
        RefuseUnsafeValues(Testing::Expanded(text, values));
    } catch (const CorvelException& e) {
        return e.what();
    }
    return {};
}

std::string RefusalOf(const std::string& parameter) {
    return "Unsafe value for parameter '" + parameter +
           "': it would be read by the shell as code, not as data.";
}

struct Case {
    std::string name;
    std::string text;
    CallValues values;
    /// Whose value is refused; empty when none is.
    std::string refused = {};
};

class ShellGuard : public testing::TestWithParam<Case> {};

TEST_P(ShellGuard, Judges) {
    const Case& given = GetParam();
    const std::string expected = given.refused.empty() ? "" : RefusalOf(given.refused);
    EXPECT_EQ(Verdict(given.text, given.values), expected)
        << Testing::Expanded(given.text, given.values).Render();
}

std::string NameOf(const testing::TestParamInfo<Case>& info) {
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(
    LetsThrough,
    ShellGuard,
    testing::ValuesIn(std::vector<Case>{
        {"BareValueOfSeveralWords", "ls $val{dir}", {{"dir", {"a b;rm x"}}}},
        {"QuotedValueThatLosesItsQuote", "echo '$val{name}'", {{"name", {"it's"}}}},
        {"ConditionalThatIsNotGiven", "cmd $if{force,--force} x", {{"size", {"1"}}}},
        {"ConditionalThatIsGiven", "cmd $if{force,--force} x", {{"force", {""}}}},
        {"QuotedList", "cmd $list{ids,',',true}", {{"ids", {"1", "2"}}}},
        {"PlainList", "cmd $list{ids,',',false}", {{"ids", {"1", "2"}}}},
        {"Multilist", "cmd $multilist{path,--path,true}", {{"path", {"a", "b"}}}},
        {"AnythingInSingleQuotes", ": '$val{x}'", {{"x", {";$(id)`id`\"\\\n#~'*"}}}},
        {"AnythingEscaped", ": $val{x}", {{"x", {";$(id)`id`\"\\\nb'*&|<>()^!"}}}},
        {"AnythingEscapedInDoubleQuotes", ": \"$val{x}\"", {{"x", {";$(id)`id`\"\\\n#~'*"}}}},
        {"NothingAtAll", ": $val{x} '$val{x}' a", {{"x", {""}}}},
        {"NothingBeforeALineEndOfTheTemplate", ": $val{x}\\\n a", {{"x", {""}}}},
        {"BlanksAndPatterns", ": $val{x} a", {{"x", {" a\t*?[b] {c,d} "}}}},
        {"DollarThatMeansNothing", ": $multilist{x,-x,true}", {{"x", {"5 $", "$ 5", "US$/a"}}}},
        {"BackslashThatMeansNothing", ": $multilist{x,-x,true}", {{"x", {"\\a", "c:\\d\\\\"}}}},
        {"NumberSignInAWord", ": $val{x}", {{"x", {"a#b"}}}},
        {"NumberSignBehindText", ": a$val{x}", {{"x", {"#b"}}}},
        {"TildeInAWord", ": $val{x}", {{"x", {"a~ b~c"}}}},
        {"AnythingInAComment", ": a # '$val{x}", {{"x", {";$(id)"}}}},
        {"ArgumentThatLooksLikeMore", ": $val{x} a", {{"x", {"a=b if -c 2"}}}},
        {"CommandByTheTemplate", "$val{x} a", {{"x", {"ls"}}}},
        {"CommandWithArguments", "$val{x} a", {{"x", {" ls -l a=b"}}}},
        {"QuotedCommand", "'$val{x}' a", {{"x", {"if"}}}},
        {"ValueOfAnAssignment", "a=$val{x} b=\"$val{x}\" ls", {{"x", {"c=d:e"}}}},
        {"TargetOfARedirection", "ls >$val{x} a", {{"x", {"b c"}}}},
        {"BehindAVariable", ": $HOME$val{x} \"$HOME$val{x}\"", {{"x", {"/a"}}}},
        {"PatternOfACase", "case a in $val{x}) b;; esac", {{"x", {"[ab]*"}}}},
        {"SafeBytesInExpansions",
         ": $(a $val{x}) `a $val{x}` ${a:-$val{x}}",
         {{"x", {"aZ09_.,:/@+=-%"}}}},
        {"NumberInArithmetic", ": $((a + $val{x}))", {{"x", {"012"}}}},
        {"SafeBytesInADocument", "cat <<E\n$val{x}\nE\n", {{"x", {"a@b.c"}}}},
        {"SafeBytesBehindAnInterpreter", "sh -c 'ls $val{x}'", {{"x", {"/a/b"}}}},
        {"SafeBytesBehindEval", "eval \"ls $val{x}\"", {{"x", {"/a/b"}}}},
        {"ArgumentOfARunner", "sudo -u '$val{u}' ls '$val{x}'", {{"u", {"a"}}, {"x", {"b c;"}}}},
        {"ArgumentNamedLikeAnInterpreter",
         "sudo systemctl status '$val{x}' --no-pager; ip link show '$val{x}' up",
         {{"x", {"ssh"}}}},
        {"ArgumentNamedLikeAShell", "pgrep '$val{x}' -c", {{"x", {"bash"}}}},
        {"ArgumentNamedLikeAConstruct", ": [[ function '$val{x}'", {{"x", {"b c;"}}}},
        {"ArgumentOfAScript", "sh ./a -c '$val{x}'", {{"x", {"b c;"}}}},
        {"VariableOfAwk", "awk -v 'a=$val{x}' '{ print a }' b", {{"x", {"b c;"}}}},
        {"ValueOfAnExport", "export 'a=$val{x}'", {{"x", {"b c;"}}}},
        {"NumbersToTheShell", "ulimit -n '$val{x}'; COLUMNS='$val{x}' ps", {{"x", {"132"}}}},
        {"NumberForARunner", "timeout $val{x} ls; nice -n $val{x} ls", {{"x", {"5"}}}},
        {"NegativeNumberForARunner", "nice -n $val{x} ls", {{"x", {"-5"}}}},
        {"ArgumentsBehindARunner",
         "sudo -n -u root ls $val{x}; env a=b timeout 5 ls $val{x}; xargs -0 ls $val{x}",
         {{"x", {"a -b  c=d"}}}},
        {"CommandOfARunnerByTheTemplate", "sudo $val{x} a", {{"x", {"ls -l b"}}}},
        {"OptionsOfARunnerByTheTemplate", "sudo $val{x}", {{"x", {"-u root ls"}}}},
        {"AnythingBehindAFormat", "printf '%s' '$val{x}'", {{"x", {"-v a[$(id)]"}}}},
        {"OperatorsOverALineEndOfTheTemplate", "a &&\\\n(b '$val{x}')", {{"x", {"c;"}}}},
        {"NothingBetweenOperatorsThatStayTwo", "a;$val{x}\n(b;$val{x})", {{"x", {""}}}},
        {"ValuesOfTheTemplatesOwnLists", "cmd $list{ids,';',false}", {{"ids", {"a b", "c"}}}},
    }),
    NameOf);

INSTANTIATE_TEST_SUITE_P(
    Refuses,
    ShellGuard,
    testing::ValuesIn(std::vector<Case>{
        {"SubstitutionInAQuotedList",
         "cmd $multilist{path,--path,true}",
         {{"path", {"a", "$(id)"}}},
         "path"},
        {"CommentAndItsEnd", "cmd $val{x}", {{"x", {"#\nid"}}}, "x"},
        {"SubstitutionInDoubleQuotes", "echo \"n '$val{x}'\"", {{"x", {"$(id)"}}}, "x"},
        {"OneOfTwoPlacesOfAToken", "test -d $val{d} && ls '$val{d}'", {{"d", {";id;#"}}}, "d"},
        {"EscapedBackslashInBackquotes", "a `b $val{x}`", {{"x", {"\\;id"}}}, "x"},
        {"QuoteThatEndsQuotes",
         "cmd 'x $val{aa}' '$val{bb}'",
         {{"aa", {"'"}}, {"bb", {";id;#"}}},
         "aa"},
        {"CommentThatDropsAnOption", "cmd $val{x} --safe", {{"x", {"#"}}}, "x"},
        {"CommentBehindABlank", "cmd a$val{x} --safe", {{"x", {" #"}}}, "x"},
        {"CommentBehindAContinuation", "cmd a$val{x} --safe", {{"x", {"\n#"}}}, "x"},
        {"ValueRightBehindAnother", "cmd $val{x}$val{y}", {{"x", {"a"}}, {"y", {"\n#"}}}, "y"},
        {"CommentBehindAnUnusualByte", "cmd $val{x} --safe", {{"x", {"\xa0#"}}}, "x"},
        {"EndOfAComment", ": # '$val{x}'", {{"x", {"a\nid"}}}, "x"},
        {"RawValueBetweenQuotes", ": 'a'$val{x}'b'", {{"x", {";id;"}}}, "x"},
        {"BackquoteInAQuotedList", ": $multilist{x,-x,true}", {{"x", {"`id`"}}}, "x"},
        {"VariableInAQuotedList", ": $multilist{x,-x,true}", {{"x", {"$HOME"}}}, "x"},
        {"BackslashBeforeAQuote",
         ": $multilist{x,-x,true} '$val{y}'",
         {{"x", {"a\\"}}, {"y", {"b"}}},
         "x"},
        {"NameBehindADollar", ": '$val{a}' $$val{x}", {{"a", {"b"}}, {"x", {"HOME"}}}, "x"},
        {"NameBehindAName", ": \"$HOME$val{x}\"", {{"x", {"a"}}}, "x"},
        {"DollarBeforeTheTemplatesBrace", ": 'a'$val{x}'b'{c}", {{"x", {"$"}}}, "x"},
        {"Tilde", ": $val{x}", {{"x", {"~root/a"}}}, "x"},
        {"TildeBehindAColon", "a=b:$val{x}", {{"x", {"~"}}}, "x"},
        {"DescriptorOfARedirection", "ls $val{x}>a", {{"x", {"2"}}}, "x"},
        {"VariableOfARedirection", "ls $val{x}>a", {{"x", {"{a}"}}}, "x"},
        {"WordsBehindAnAssignment", "a=$val{x} ls", {{"x", {"b id"}}}, "x"},
        {"AssignmentsBehindAnAssignment", "a=$val{x} ls", {{"x", {"b PATH=c"}}}, "x"},
        {"AssignmentInsteadOfACommand", "$val{x} ls", {{"x", {"PATH=a"}}}, "x"},
        {"NameOfAnAssignment", "$val{x}=a ls", {{"x", {"PATH"}}}, "x"},
        {"ReservedWordInsteadOfACommand", "$val{x} ls", {{"x", {"if"}}}, "x"},
        {"ReservedWordInPart", "i$val{x} ls", {{"x", {"f"}}}, "x"},
        {"CommandThatIsMissing", "$val{x} ls", {{"x", {""}}}, "x"},
        {"SeparatorsThatBecomeAnd", "a &$val{x}& b", {{"x", {""}}}, "x"},
        {"SeparatorsThatBecomeAndOverALineEnd", "a &$val{x}& b", {{"x", {"\n\n"}}}, "x"},
        {"PipesThatBecomeOr", "a |$val{x}| b", {{"x", {""}}}, "x"},
        {"SeparatorsThatBecomeTheEndOfACase", "a;$val{x}; b", {{"x", {""}}}, "x"},
        {"ValuesThatLetOperatorsMeet", "a;$val{x}$val{y}; b", {{"x", {""}}, {"y", {"\n"}}}, "y"},
        {"TargetWithoutWhichOutputIsAppended", "a >$val{x}> b", {{"x", {""}}}, "x"},
        {"TargetWithoutWhichADocumentBegins", "a <$val{x}< b", {{"x", {""}}}, "x"},
        {"CommandWithoutWhichEverythingIsRedirected", "a &$val{x}> b", {{"x", {""}}}, "x"},
        {"CommandWithoutWhichArithmeticBegins", "($val{x}(a))", {{"x", {"\n"}}}, "x"},
        {"NameThatLosesItsLastByte", "$val{x}a", {{"x", {"b "}}}, "x"},
        {"CommandOfBlanks", "$val{x} ls", {{"x", {" \t"}}}, "x"},
        {"ValueThatMovesToTheCommand", "$val{x} '$val{y}'", {{"x", {""}}, {"y", {"id"}}}, "y"},
        {"WordsBehindATarget", ">$val{x} ls", {{"x", {"a id"}}}, "x"},
        {"TargetThatIsMissing", ">$val{x} ls a", {{"x", {""}}}, "x"},
        {"WordsOfACase", "case $val{x} in a) b;; esac", {{"x", {"a in"}}}, "x"},
        {"EndOfACase", "case a in $val{x}) b;; esac", {{"x", {"esac"}}}, "x"},
        {"VariableOfALoop", "for $val{x} in a; do b; done", {{"x", {"c d"}}}, "x"},
        {"BlankInASubstitution", ": $(a '$val{x}')", {{"x", {"b c"}}}, "x"},
        {"QuoteInAQuotedSubstitution", ": \"$(a $val{x})\"", {{"x", {"\""}}}, "x"},
        {"CommandInASubstitution", ": $($val{x} a)", {{"x", {""}}}, "x"},
        {"BraceInAParameter", ": ${a:-$val{x}}", {{"x", {"}"}}}, "x"},
        {"NameOfAParameter", ": ${a$val{x}}", {{"x", {"b"}}}, "x"},
        {"NameWithoutWhichACommandIsNone", ": ${$val{x}$(", {{"x", {""}}}, "x"},
        {"OperatorOfAParameter", ": ${a$val{x}}", {{"x", {"=b"}}}, "x"},
        {"NameInArithmetic", ": $((1 + $val{x}))", {{"x", {"a"}}}, "x"},
        {"DelimiterInADocument", "cat <<E\n$val{x}\nid\nE\n", {{"x", {"E"}}}, "x"},
        {"DelimiterOfADocument", "cat <<$val{x}\nid\nE\n", {{"x", {"E"}}}, "x"},
        {"BlankInADocument", "cat <<'E'\n$val{x}\nE\n", {{"x", {"a b"}}}, "x"},
        {"BlankBehindAnInterpreter", "bash -ec \"ls $val{x}\"", {{"x", {"a b"}}}, "x"},
        {"BlankBehindEval", "eval ls '$val{x}'", {{"x", {"a b"}}}, "x"},
        {"BlankBehindARunner", "sudo env A=b sh -c 'ls $val{x}'", {{"x", {"a b"}}}, "x"},
        {"BlankBehindAnUnknownRunner", "tool a sh -c 'ls $val{x}'", {{"x", {"a b"}}}, "x"},
        {"BlankBehindAnArgumentNamedLikeAShell",
         "pgrep $val{x} -c '$val{y}'",
         {{"x", {"sh"}}, {"y", {"a b"}}},
         "y"},
        {"OptionBeforeCode", "sh $val{x} 'a b'", {{"x", {"-c"}}}, "x"},
        {"OptionAndCode", "sh $val{x}", {{"x", {"-c id"}}}, "x"},
        {"InterpreterBeforeCode", "$val{x} -c 'a'", {{"x", {"bash"}}}, "x"},
        {"EvalBeforeAValue", "$val{x} '$val{y}'", {{"x", {"eval"}}, {"y", {"id"}}}, "y"},
        {"EvalInPart", "ev$val{x} '$val{y}'", {{"x", {"al"}}, {"y", {"id"}}}, "y"},
        {"RunnerBeforeAnInterpreter",
         "$val{x} awk '$val{y}'",
         {{"x", {"env"}}, {"y", {"id"}}},
         "x"},
        {"ProgramOfAwk", "awk '{ print \"$val{x}\" }'", {{"x", {"\" b"}}}, "x"},
        {"ScriptOfSed", "sed 's/a/$val{x}/'", {{"x", {"b/e;c"}}}, "x"},
        {"CodeThroughAPipe", "echo '$val{x}' | sh", {{"x", {"a;id"}}}, "x"},
        {"NameOfAnExport", "export '$val{x}'", {{"x", {"PATH=a"}}}, "x"},
        {"SeparatorFromAValue",
         ": $list{bb,'$val{aa}',false}",
         {{"aa", {"#"}}, {"bb", {"", "c"}}},
         "aa"},
        {"NumberOfALimit", "ulimit -n '$val{x}'", {{"x", {"a[$(id)]"}}}, "x"},
        {"VariableThatIsArithmetic", "OPTIND='$val{x}'; a", {{"x", {"b[$(id)]"}}}, "x"},
        {"OptionThatNamesAVariable",
         "printf $val{x} '$val{y}'",
         {{"x", {"-v"}}, {"y", {"a[$(id)]"}}},
         "x"},
        {"VariablesOfADeclaration", "export a=$val{x}; ls", {{"x", {"b PATH=c"}}}, "x"},
        {"CommandBehindAnOperandOfARunner", "timeout $val{x} ls", {{"x", {"5 id"}}}, "x"},
        {"CommandBehindAnAssignmentOfARunner", "env a=$val{x} ls", {{"x", {"b id"}}}, "x"},
        {"CommandBehindAnOptionOfARunner", "sudo -u $val{x} ls", {{"x", {"root id"}}}, "x"},
        {"OptionThatTakesARunnersCommand", "timeout $val{x} 5 ls a", {{"x", {"-s"}}}, "x"},
        {"ValueThatMovesToARunnersCommand",
         "sudo $val{x} '$val{y}'",
         {{"x", {""}}, {"y", {"id"}}},
         "y"},
        {"RunnerOfAnArgument", "$val{x} ls", {{"x", {"nohup"}}}, "x"},
        {"AnythingBehindDoubt", "[[ a ]]; : '$val{x}'", {{"x", {"b c"}}}, "x"},
    }),
    NameOf);

TEST(ShellGuard, TemplatesOwnCharactersMayBeAnything) {
    for (const std::string text : {": \1 $(a; `b` \"c\") 'd'", "'", "a <<E\nb", ""}) {
        EXPECT_EQ(Verdict(text, {{"x", {"a"}}}), "") << text;
        EXPECT_EQ(Verdict(text + " # $val{x}", {{"x", {"a"}}}), "") << text;
    }
}

TEST(ShellGuard, LongValuesTakeLittleTime) {
    constexpr std::size_t kSize = 200000;
    for (const std::string symbol :
         {"a", "\n", "$(", "`", "\"${", "(", "$((", "'", " -c sh", "<<E\n$("}) {
        std::string value;
        while (value.size() < kSize) {
            value += symbol;
        }
        for (const std::string text : {": '$val{x}'", ": $val{x}", "sh \"`$(a 'b'$val{x}'c'`)\""}) {
            const std::string verdict = Verdict(text, {{"x", {value}}});
            EXPECT_TRUE(verdict.empty() || verdict == RefusalOf("x"));
        }
    }
}

}  // namespace

}  // namespace Corvel::AutoCli
