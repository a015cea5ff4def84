#include <vector>

#include <gtest/gtest.h>

#include "tests/autocli/plugins/ShellLexerCase.h"

namespace Corvel::AutoCli {

namespace {

using Testing::ShellLexer;
using Case = Testing::ShellLexerCase;

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
}), ShellLexer::NameOf);

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
}), ShellLexer::NameOf);

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
}), ShellLexer::NameOf);

// clang-format on

}  // namespace

}  // namespace Corvel::AutoCli
