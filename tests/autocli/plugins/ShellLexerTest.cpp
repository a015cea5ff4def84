#include <algorithm>
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "corvel/autocli/plugins/ShellLexer.h"

namespace Corvel::AutoCli {

namespace {

/// A line, and below each of its bytes what the lexer says of it.
struct Reading {
    std::string line;
    /// w data, _ blank, ; operator, + its tail, q quote, e escape, c continuation, $ expansion,
    /// ~ tilde, # comment
    std::string roles;
    /// C command, A argument, = assignment, R reserved, N name, W case word, P pattern, T target,
    /// F descriptor, D delimiter; a blank where there is no word. Blanks at the end are left out.
    std::string places;
    /// ? where it is doubtful.
    std::string doubts;

    bool operator==(const Reading&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const Reading& reading) {
    std::string line = reading.line;
    std::replace(line.begin(), line.end(), '\n', '^');
    return stream << '\n'
                  << line << '\n'
                  << reading.roles << '\n'
                  << reading.places << '\n'
                  << reading.doubts;
}

std::string WithoutBlanksAtTheEnd(std::string text) {
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

Reading Read(const std::string& line) {
    const ShellLine read = ReadShellLine(line);
    Reading reading{line, {}, {}, {}};
    for (const ShellByte& byte : read.bytes) {
        const ShellPlace place =
            byte.word == ShellByte::kNoWord ? ShellPlace::None : read.words[byte.word].place;
        reading.roles += "w_;+qec$~#"[static_cast<std::size_t>(byte.role)];
        reading.places += " CA=RNWPTFD"[static_cast<std::size_t>(place)];
        reading.doubts += byte.isDoubtful ? '?' : ' ';
    }
    reading.places = WithoutBlanksAtTheEnd(reading.places);
    reading.doubts = WithoutBlanksAtTheEnd(reading.doubts);
    return reading;
}

struct Case {
    std::string name;
    Reading expected;
};

class ShellLexer : public testing::TestWithParam<Case> {};

TEST_P(ShellLexer, ReadsAsShellsDo) {
    EXPECT_EQ(Read(GetParam().expected.line), GetParam().expected);
}

std::string NameOf(const testing::TestParamInfo<Case>& info) {
    return info.param.name;
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Quotes, ShellLexer, testing::ValuesIn(std::vector<Case>{
    {"SingleQuotesHoldEverythingButTheirEnd",
     {"a 'b\"$`\\ #;' c",
      "w_qwwwwwwwwq_w",
      "C AAAAAAAAAA A",
      ""}},
    {"DoubleQuotesKeepDollarBackquoteAndBackslash",
     {"a \"b' $c `d` \\$ \\` \\\" \\\\ \\x\" e",
      "w_qwww$$w$w$wewwewwewwewwwwq_w",
      "C AAAAAAAACAAAAAAAAAAAAAAAAA A",
      "         ???"}},
    {"QuotesInTheMiddleOfAWord",
     {"a'b'\"c\"d e",
      "wqwqqwqw_w",
      "CCCCCCCC A",
      ""}},
    {"EmptyQuotesAreAWord",
     {"'' a",
      "qq_w",
      "CC A",
      ""}},
    {"UnterminatedQuotesGoToTheEnd",
     {"a 'b c",
      "w_qwww",
      "C AAAA",
      ""}},
    {"UnterminatedDoubleQuotesGoToTheEnd",
     {"a \"b c",
      "w_qwww",
      "C AAAA",
      ""}},
    {"NewlineInQuotesIsData",
     {"'a\nb' \"c\nd\"",
      "qwwwq_qwwwq",
      "CCCCC AAAAA",
      ""}},
}), NameOf);

INSTANTIATE_TEST_SUITE_P(Backslashes, ShellLexer, testing::ValuesIn(std::vector<Case>{
    {"BackslashMakesTheNextByteData",
     {"\\a \\; \\  \\# \\' \\\"b",
      "ew_ew_ew_ew_ew_eww",
      "CC AA AA AA AA AAA",
      ""}},
    {"BackslashAtTheEndIsData",
     {"a \\",
      "w_w",
      "C A",
      ""}},
    {"BackslashAndNewlineDisappear",
     {"a\\\nb \"c\\\nd\" 'e\\\nf'",
      "wccw_qwccwq_qwwwwq",
      "CCCC AAAAAA AAAAAA",
      ""}},
    {"CommentMayBeginBehindAContinuation",
     {"a \\\n#b",
      "w_cc##",
      "C",
      "    ??"}},
    {"NumberSignBehindAContinuationIsDoubtful",
     {"a\\\n#b",
      "wccww",
      "CCCCC",
      "   ??"}},
    {"ContinuationBehindADollarIsDoubtful",
     {"\"$\\\n(a)\" b",
      "qwccwwwq_w",
      "CCCCCCCC A",
      "  ????????"}},
}), NameOf);

INSTANTIATE_TEST_SUITE_P(Comments, ShellLexer, testing::ValuesIn(std::vector<Case>{
    {"CommentEndsBeforeTheNewline",
     {"a # 'b \"\nc",
      "w_######;w",
      "C        C",
      ""}},
    {"NumberSignInAWordIsData",
     {"a#b '#' \\#c d",
      "www_qwq_eww_w",
      "CCC AAA AAA A",
      ""}},
    {"NumberSignBehindAnUnusualByteIsDoubtful",
     {"é#a",
      "wwww",
      "CCCC",
      "  ?"}},
    {"NumberSignBehindAnEscapedBlankIsDoubtful",
     {"a\\ #b",
      "wewww",
      "CCCCC",
      "   ?"}},
    {"CommentInASubstitutionEndsThere",
     {"$(a # )\nb) c",
      "$$w_###;w$_w",
      "CCC     CC A",
      "??????????"}},
}), NameOf);

INSTANTIATE_TEST_SUITE_P(Expansions, ShellLexer, testing::ValuesIn(std::vector<Case>{
    {"NamesGoAsFarAsTheirCharacters",
     {"$ab_1/$c.$1x ${d}e",
      "$$$$$w$$w$$w_$$$$w",
      "CCCCCCCCCCCC AAAAA",
      "             ????"}},
    {"SpecialParameters",
     {"\"$@\" $* $# $? $- $! $$ $0",
      "q$$q_$$_$$_$$_$$_$$_$$_$$",
      "CCCC AA AA AA AA AA AA AA",
      ""}},
    {"DollarBeforeAnythingElseIsData",
     {"$ $% \"$\" \"$ a\" $/ a$",
      "w_ww_qwq_qwwwq_ww_ww",
      "C AA AAA AAAAA AA AA",
      ""}},
    {"DollarBeforeAQuoteIsReadDifferently",
     {"$'a' \"$'b'\" 'c'",
      "$qwq_qwwwwq_qwq",
      "CCCC AAAAAA AAA",
      "???????????????"}},
    {"DollarBeforeADoubleQuote",
     {"$\"a\"",
      "$qwq",
      "CCCC",
      ""}},
    {"OldArithmeticIsReadDifferently",
     {"$[1] 'a'",
      "$www_qwq",
      "CCCC AAA",
      "????????"}},
    {"ParametersWithOperators",
     {"${a:-b} ${a#b} ${a%%b c} ${#a} ${a:=$b} ${a?'}'} d",
      "$$$$$w$_$$$$w$_$$$$$www$_$$$$$_$$$$$$$$_$$$$qwq$_w",
      "CCCCCCC AAAAAA AAAAAAAAA AAAAA AAAAAAAA AAAAAAAA A",
      "??????? ?????? ????????? ????? ???????? ????????"}},
    {"BackslashesInAParameter",
     {"${a:-\\}\\\nb} c",
      "$$$$$ewccw$_w",
      "CCCCCCCCCCC A",
      "???????????"}},
    {"CommandsInBracesAreReadDifferently",
     {"${ a;} b",
      "$$$ww$_w",
      "CCCCCC A",
      "????????"}},
    {"QuotesInAQuotedParameterAreReadDifferently",
     {"\"${a:-'b'}\" c",
      "q$$$$$www$q_w",
      "CCCCCCCCCCC A",
      " ????????????"}},
    {"Arithmetic",
     {"$((1 + a * (b2 - 3) + $c)) d",
      "$$$wwww$wwww$$wwwwwwww$$$$_w",
      "CCCCCCCCCCCCCCCCCCCCCCCCCC A",
      "??????????????????????????"}},
    {"ArithmeticThatIsASubstitution",
     {"$((a) | b) c",
      "$$$$$_;_w;_w",
      "CCCCC   C  A",
      "????????????"}},
    {"TildeAtTheBeginningOfAWord",
     {"~a b~ ~ a=~/b:~c '~' \\~",
      "~w_ww_~_ww~www~w_qwq_ew",
      "CC AA A AAAAAAAA AAA AA",
      ""}},
}), NameOf);

INSTANTIATE_TEST_SUITE_P(Nesting, ShellLexer, testing::ValuesIn(std::vector<Case>{
    {"SubstitutionHasWordsOfItsOwn",
     {"a b$(c \"d $(e 'f')\" g)h i",
      "w_w$$w_qww$$w_qwq$q_w$w_w",
      "C AAAC AAAAAC AAAAA AAA A",
      "   ???????????????????"}},
    {"SubstitutionInDoubleQuotes",
     {"\"a $(b \"c\") d\" e",
      "qww$$w_qwq$wwq_w",
      "CCCCCC AAACCCC A",
      "   ????????"}},
    {"Backquotes",
     {"a `b 'c' d` e",
      "w_$w_qwq_w$_w",
      "C AC AAA AA A",
      "  ?????????"}},
    {"BackquotesInDoubleQuotes",
     {"\"a `b c` d\" e",
      "qww$w_w$wwq_w",
      "CCCCC ACCCC A",
      "   ?????"}},
    {"BackquoteEndsWhatIsOpenInIt",
     {"`a \"b` c",
      "$w_qw$_w",
      "CC AAC A",
      "????????"}},
    {"EscapedBackquoteIsReadDifferently",
     {"`a \\`b\\` c` d",
      "$w_ewwew_w$_w",
      "CC AAAAA AC A",
      "?????????????"}},
    {"EscapedQuoteInBackquotesIsReadDifferently",
     {"`a \\\"b` c",
      "$w_eww$_w",
      "CC AAAC A",
      "?????????"}},
    {"EscapedQuoteInQuotesInBackquotesIsReadDifferently",
     {"`a \"b\\\"c\"` d",
      "$w_qwewwq$_w",
      "CC AAAAAAC A",
      "????????????"}},
    {"OtherBackslashesInQuotesInBackquotesAreNot",
     {"`a \"b\\$c\"` d",
      "$w_qwewwq$_w",
      "CC AAAAAAC A",
      "??????????"}},
    {"OtherBackslashesInBackquotesAreNot",
     {"`a \\b` c",
      "$w_ew$_w",
      "CC AAC A",
      "??????"}},
    {"BackquoteInACommentOfBackquotes",
     {"`a # b` c",
      "$w_###$_w",
      "CC    C A",
      "?????????"}},
    {"ReservedWordAtTheEndOfBackquotes",
     {"`if` a",
      "$ww$_w",
      "CRRC A",
      "????"}},
    {"WordThatShellsReadDifferentlyAtTheEndOfBackquotes",
     {"`[[` a",
      "$ww$_w",
      "CCCC A",
      "??????"}},
    {"GroupsAndFunctions",
     {"(a; b) | c; f() { d; }",
      ";w;_w;_;_w;_w;;_w_w;_w",
      " C  C    C  C   R C  R",
      ""}},
    {"ArraysAreReadDifferently",
     {"a=(b c) d",
      "ww;w_w;_w",
      "== C A  A",
      "  ???????"}},
    {"TwoParenthesesAreReadDifferently",
     {"((a)) b",
      ";+w;;_w",
      "  C   A",
      "???????"}},
    {"ProcessSubstitutionIsReadDifferently",
     {"a <(b) c",
      "w_;+w;_w",
      "C   C  T",
      "  ??????"}},
}), NameOf);

INSTANTIATE_TEST_SUITE_P(Documents, ShellLexer, testing::ValuesIn(std::vector<Case>{
    {"DocumentWithExpansions",
     {"a <<E b\nc $d \\$ \"\nE\nf",
      "w_;+w_w;ww$$wewwwwqqw",
      "C   D A             C",
      "        ????????????"}},
    {"QuotedDocument",
     {"a <<'E' b\nc $d \\$ \"\nE\nf",
      "w_;+qwq_w;wwwwwwwwwwqqw",
      "C   DDD A             C",
      "          ????????????"}},
    {"DocumentWithoutTabs",
     {"a <<-E\n\tb\n\tE\nc",
      "w_;++w;wwwqqqw",
      "C    D       C",
      "       ??????"}},
    {"SeveralDocuments",
     {"a <<E <<F\nb\nE\nc\nF\nd",
      "w_;+w_;+w;wwqqwwqqw",
      "C   D   D         C",
      "          ????????"}},
    {"DocumentThatBeginsLikeAnOperator",
     {"a <<E\n&b\nE\nc",
      "w_;+w;wwwqqw",
      "C   D      C",
      "      ?????"}},
    {"DocumentWithoutEnd",
     {"a <<E\nb\nc",
      "w_;+w;www",
      "C   D",
      "      ???"}},
    {"EmptyDocument",
     {"a <<E\nE\nb",
      "w_;+w;qqw",
      "C   D   C",
      "      ??"}},
    {"DocumentOfTwoCommands",
     {"a <<E | b\nc\nE\nd",
      "w_;+w_;_w;wwqqw",
      "C   D   C     C",
      "          ????"}},
    {"DocumentInASubstitution",
     {"$(a <<E\nb\nE\n) c",
      "$$w_;+w;wwqq$_w",
      "CCC   D     C A",
      "?????????????"}},
    {"DocumentBehindAGroup",
     {"(a <<E)\nb\nE\nc",
      ";w_;+w;;wwqqw",
      " C   D      C",
      "        ????"}},
    {"DocumentAroundASubstitution",
     {"a <<E\n$(b c)\nE\nd",
      "w_;+w;$$w_w$wqqw",
      "C   D   C A    C",
      "      ?????????"}},
    {"SubstitutionThatTheDocumentCuts",
     {"a <<E\n$(b\nE\nd",
      "w_;+w;$$w;qqw",
      "C   D   C   C",
      "      ???????"}},
    {"SubstitutionInFrontOfTheDocument",
     {"a <<E $(b)\nc\nE\nd",
      "w_;+w_$$w$;wwqqw",
      "C   D AACA     C",
      "      ??????????"}},
    {"DocumentInBackquotesIsReadDifferently",
     {"`a <<E` b",
      "$w_;+w$_w",
      "CC   DC A",
      "?????????"}},
    {"ExpandedDelimiterIsReadDifferently",
     {"a <<$b c",
      "w_;+$$_w",
      "C   DD A",
      "      ??"}},
    {"HereStringIsReadDifferently",
     {"a <<<b c",
      "w_;++w_w",
      "C    T A",
      "  ??????"}},
    {"ContinuationInADocumentIsReadDifferently",
     {"a <<E\nb\\\nE\nc\nE\nd",
      "w_;+w;wccqqw;w;w",
      "C   D      C C C",
      "      ??????????"}},
}), NameOf);

INSTANTIATE_TEST_SUITE_P(Commands, ShellLexer, testing::ValuesIn(std::vector<Case>{
    {"AssignmentsRedirectionsAndCommand",
     {"a=b c+=d 2>e f g=h <i j",
      "www_wwww_w;w_w_www_;w_w",
      "=== ==== F T C AAA  T A",
      ""}},
    {"AssignmentNeedsAPlainName",
     {"a\\b=c 'd'=e",
      "wewww_qwqww",
      "CCCCC AAAAA",
      ""}},
    {"NumberBeforeARedirectionIsADescriptor",
     {"a 2>b 3 >c 4'5'>d {e}>f x<&1",
      "w_w;w_w_;w_wqwq;w_www;w_w;+w",
      "C F T A  T AAAA T FFF T A  T",
      ""}},
    {"DescriptorIsPlain",
     {"a \"2\">b",
      "w_qwq;w",
      "C AAA T",
      ""}},
    {"DescriptorHasBothItsBraces",
     {"a {b>c d}>e",
      "w_ww;w_ww;w",
      "C AA T AA T",
      ""}},
    {"EveryOperator",
     {"a && b || c & d ; e | f |& g",
      "w_;+_w_;+_w_;_w_;_w_;_w_;+_w",
      "C    C    C   C   C   C    C",
      ""}},
    {"ReservedWordsBeginCommands",
     {"if a; then b; elif c; else d; fi; ! e; { f; }",
      "ww_w;_wwww_w;_wwww_w;_wwww_w;_ww;_w_w;_w_w;_w",
      "RR C  RRRR C  RRRR C  RRRR C  RR  R C  R C  R",
      ""}},
    {"CaseItemsEndInThreeWays",
     {"case a in b) c;& d) e;;& esac; f",
      "wwww_w_ww_w;_w;+_w;_w;++_wwww;_w",
      "RRRR W RR P  C   P  C    RRRR  C",
      ""}},
    {"EsacInAParenthesisIsAPattern",
     {"case a in (esac) b;; esac; c",
      "wwww_w_ww_;wwww;_w;+_wwww;_w",
      "RRRR W RR  PPPP  C   RRRR  C",
      ""}},
    {"ReservedWordsAreNoneElsewhere",
     {"a if; x=1 if; \\if; <b if",
      "w_ww;_www_ww;_eww;_;w_ww",
      "C AA  === CC  CCC   T CC",
      ""}},
    {"Loops",
     {"for a in b c; do d; done; while e; do f; done",
      "www_w_ww_w_w;_ww_w;_wwww;_wwwww_w;_ww_w;_wwww",
      "RRR N RR A A  RR C  RRRR  RRRRR C  RR C  RRRR",
      ""}},
    {"LoopOverTheParameters",
     {"for a do b; done; for c\nin d\ndo e\ndone",
      "www_w_ww_w;_wwww;_www_w;ww_w;ww_w;wwww",
      "RRR N RR C  RRRR  RRR N RR A RR C RRRR",
      ""}},
    {"CaseItems",
     {"case a in (b|c) d;; e) f\nesac; g",
      "wwww_w_ww_;w;w;_w;+_w;_w;wwww;_w",
      "RRRR W RR  P P  C   P  C RRRR  C",
      ""}},
    {"CaseItemsOverLines",
     {"case a\nin\n\nb)\nc\n;;\nesac\nd",
      "wwww_w;ww;;w;;w;;+;wwww;w",
      "RRRR W RR  P  C    RRRR C",
      ""}},
    {"CaseInCase",
     {"case a in b) case c in d) e;; esac;; f) g;; esac h",
      "wwww_w_ww_w;_wwww_w_ww_w;_w;+_wwww;+_w;_w;+_wwww_w",
      "RRRR W RR P  RRRR W RR P  C   RRRR   P  C   RRRR A",
      ""}},
    {"CaseInASubstitution",
     {"$(case a in b) c;; esac) d",
      "$$wwww_w_ww_w;_w;+_wwww$_w",
      "CCRRRR W RR P  C   RRRRC A",
      "????????????????????????"}},
    {"LeftOpenCaseInASubstitution",
     {"$(case a in b) c ) d",
      "$$wwww_w_ww_w;_w_$_w",
      "CCRRRR W RR P  C C A",
      "????????????????????"}},
    {"ElementsOfArraysAreReadDifferently",
     {"a[1]=b c",
      "wwwwww_w",
      "CCCCCC A",
      " ???????"}},
    {"KeywordsOfSingleShells",
     {"[[ a ]]; b",
      "ww_w_ww;_w",
      "CC A AA  C",
      "  ????????"}},
    {"StrayParenthesis",
     {"a ) b",
      "w_;_w",
      "C   A",
      ""}},
}), NameOf);

// clang-format on

TEST(ShellLexer, EmptyLineHasNoBytes) {
    const ShellLine read = ReadShellLine("");
    EXPECT_TRUE(read.bytes.empty());
    EXPECT_TRUE(read.words.empty());
}

TEST(ShellLexer, WordsAreKnownWithoutTheirQuotes) {
    const ShellLine read = ReadShellLine("e'va'\"l\" \\-c \"$a/b\" ${c:-d}");
    ASSERT_EQ(read.words.size(), 4U);
    EXPECT_EQ(read.words[0].text, "eval");
    EXPECT_EQ(read.words[1].text, "-c");
    EXPECT_EQ(read.words[2].text, std::string("\0\0/b", 4));
    EXPECT_EQ(read.words[3].text, std::string("\0\0\0d\0", 5));
    EXPECT_FALSE(read.words[0].isPlain);
    EXPECT_TRUE(read.words[0].isKnown);
    EXPECT_FALSE(read.words[2].isKnown);
}

TEST(ShellLexer, PipesLinkTheirCommands) {
    const ShellLine read = ReadShellLine("a | b |& c || d; e");
    constexpr std::uint32_t kNone = ShellLine::kNoCommand;
    EXPECT_EQ(read.feeders, (std::vector<std::uint32_t>{kNone, 0, 1, kNone, kNone}));
}

TEST(ShellLexer, EveryPairAndTripleOfSpecialBytesIsRead) {
    const std::string alphabet = "'\"\\`$(){}<>;&|#~=! \n-aE0[:" + std::string(1, '\0');
    for (const char a : alphabet) {
        for (const char b : alphabet) {
            for (const char c : alphabet) {
                for (const std::string frame : {"", "`", "<<E\n", "${", "$((", "case a in "}) {
                    const std::string line = frame + a + b + c;
                    ASSERT_EQ(ReadShellLine(line).bytes.size(), line.size());
                }
            }
        }
    }
}

TEST(ShellLexer, GroupsHandOnTheirHereDocumentsInOrder) {
    const ShellLine read = ReadShellLine("( ( a <<A ); b <<B ); c <<C\nA\nB\nC\nd");
    EXPECT_FALSE(read.bytes.back().isDoubtful);
    EXPECT_EQ(read.words.back().text, "d");
    EXPECT_EQ(read.words.back().place, ShellPlace::Command);
}

TEST(ShellLexer, HereDocumentWhoseDelimiterIsMissingIsDoubtful) {
    const ShellLine read = ReadShellLine("case a <<\n\nword rest");
    ASSERT_EQ(read.bytes.size(), std::string("case a <<\n\nword rest").size());
    EXPECT_FALSE(read.bytes.front().isDoubtful);
    EXPECT_TRUE(read.bytes.back().isDoubtful);
}

TEST(ShellLexer, AnyNestingTakesLittleTime) {
    constexpr std::size_t kDepth = 100000;
    for (const std::string opening :
         {"(", "$(", "\"$(", "${a:-", "$((", "`", "case a in b) ", "<<E\n", "$(<<E\n"}) {
        std::string line;
        for (std::size_t i = 0; i < kDepth; ++i) {
            line += opening;
        }
        ASSERT_EQ(ReadShellLine(line).bytes.size(), line.size()) << opening;
    }
}

TEST(ShellLexer, NestedGroupsOfHereDocumentsTakeLittleTime) {
    constexpr std::size_t kDepth = 100000;
    std::string line;
    for (std::size_t i = 0; i < kDepth; ++i) {
        line += "( <<E ";
    }
    line += std::string(kDepth, ')');
    EXPECT_EQ(ReadShellLine(line).bytes.size(), line.size());
}

TEST(ShellLexer, LongNamesBeforeManyEqualSignsAndBracketsTakeLittleTime) {
    constexpr std::size_t kCount = 300000;
    for (const char* end : {"=", "["}) {
        for (const char* name : {"a", "-"}) {
            std::string line = name + std::string(kCount, 'a');
            for (std::size_t i = 0; i < kCount; ++i) {
                line += end;
            }
            const ShellLine read = ReadShellLine(line);
            ASSERT_EQ(read.bytes.size(), line.size()) << name << end;
            EXPECT_EQ(read.words.front().isAssignment, *name == 'a' && *end == '=');
            EXPECT_EQ(read.bytes.back().isDoubtful, *name == 'a' && *end == '[');
        }
    }
}

}  // namespace

}  // namespace Corvel::AutoCli
