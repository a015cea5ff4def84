#include <vector>

#include <gtest/gtest.h>

#include "tests/autocli/plugins/ShellLexerCase.h"

namespace Corvel::AutoCli {

namespace {

using Testing::ShellLexer;
using Case = Testing::ShellLexerCase;

// clang-format off
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
    {"DoubledOperatorsOfParameters",
     {"${a//b} ${a##b} ${a^^b} ${a,,b} ${a%%b} ${a==b} ${a/#b}",
      "$$$$$w$_$$$$$w$_$$$$$w$_$$$$$w$_$$$$$w$_$$$$ww$_$$$$ww$",
      "CCCCCCC AAAAAAA AAAAAAA AAAAAAA AAAAAAA AAAAAAA AAAAAAA",
      "??????? ??????? ??????? ??????? ??????? ??????? ???????"}},
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
}), ShellLexer::NameOf);

// clang-format on

}  // namespace

}  // namespace Corvel::AutoCli
