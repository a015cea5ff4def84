#include <vector>

#include <gtest/gtest.h>

#include "tests/autocli/plugins/ShellLexerCase.h"

namespace Corvel::AutoCli {

namespace {

using Testing::ShellLexer;
using Case = Testing::ShellLexerCase;

// clang-format off
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
}), ShellLexer::NameOf);

// clang-format on

}  // namespace

}  // namespace Corvel::AutoCli
