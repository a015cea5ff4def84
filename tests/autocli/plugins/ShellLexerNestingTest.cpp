#include <vector>

#include <gtest/gtest.h>

#include "tests/autocli/plugins/ShellLexerCase.h"

namespace Corvel::AutoCli {

namespace {

using Testing::ShellLexer;
using Case = Testing::ShellLexerCase;

// clang-format off
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
      "== C A  C",
      "  ???????"}},
    {"TwoParenthesesAreReadDifferently",
     {"((a)) b",
      ";+w;;_w",
      "  C   C",
      "???????"}},
    {"ProcessSubstitutionIsReadDifferently",
     {"a <(b) c",
      "w_;+w;_w",
      "C   C  C",
      "  ??????"}},
}), ShellLexer::NameOf);

// clang-format on

}  // namespace

}  // namespace Corvel::AutoCli
