#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "corvel/autocli/plugins/ShellInterpreters.h"
#include "corvel/autocli/plugins/ShellLexer.h"

namespace Corvel::AutoCli {

namespace {

struct Case {
    std::string name;
    std::string line;
    /// The words that are code, parted by bars, and each mark of an expansion as a $.
    std::string code;
};

std::string CodeOf(const std::string& text) {
    ShellLine line = ReadShellLine(text);
    MarkInterpretedWords(line);
    std::string code;
    for (const ShellWord& word : line.words) {
        if (word.isCode || word.mayBeCode) {
            code += (code.empty() ? "" : "|") + word.text;
        }
    }
    std::replace(code.begin(), code.end(), ShellWord::kExpanded, '$');
    return code;
}

class ShellInterpreters : public testing::TestWithParam<Case> {};

TEST_P(ShellInterpreters, MarksCode) {
    EXPECT_EQ(CodeOf(GetParam().line), GetParam().code) << GetParam().line;
}

std::string NameOf(const testing::TestParamInfo<Case>& info) {
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(
    Interpreters,
    ShellInterpreters,
    testing::ValuesIn(std::vector<Case>{
        {"OrdinaryCommand", "ls -c x; grep -e y z", ""},
        {"EvalTakesEveryWord", "eval a 'b c'; d", "a|b c"},
        {"ShellTakesWhatIsBehindC", "sh -c 'a b' c; d", "-c|a b|c"},
        {"ShellTakesClustersOfOptions", "bash -xc a; dash -e -u -c b", "-xc|a|-c|b"},
        {"ShellTakesOptionsWithWords", "bash -o pipefail -c a", "-c|a"},
        {"ShellWithAScriptTakesNothing", "sh ./a -c b; bash a.sh -c b", ""},
        {"ShellWithAPath", "/bin/sh -c a; /usr/bin/ksh93 -c b", "-c|a|-c|b"},
        {"QuotedNameIsTheSame", "'s'h -c a; \"ev\"al b", "-c|a|b"},
        {"VersionsAreTheSame", "python3.11 -c a; perl5.36 -e b; lua5.4 -e c", "-c|a|-e|b|-e|c"},
        {"PerlTakesClusters", "perl -lne a b; perl -pi -E c", "-lne|a|b|-E|c"},
        {"CodeInTheSameWord", "perl '-ea b' c", "-ea b|c"},
        {"LongOptions", "node --eval a; su b --command='c d'", "--eval|a|--command=c d"},
        {"SuTakesTheUserFirst", "su root -c a; runuser -u b -c c", "-c|a|-c|c"},
        {"SshTakesEveryWord", "ssh -p 1 host a b", "-p|1|host|a|b"},
        {"AwkTakesItsFirstWord", "awk -F: -v a=b '{c}' d e", "{c}"},
        {"AwkWithAFileTakesNothing", "awk -f a.awk -v b=c d", ""},
        {"AwkTakesOptionsOfCode", "gawk -e a -e b c", "-e|a|-e|b"},
        {"SedTakesItsFirstWord", "sed -n 's/a/b/' c; sed -i -e d -e e f", "s/a/b/|-e|d|-e|e"},
        {"TrapLetUnsetMake", "trap a b; let e; unset f; make g", "a|b|e|f|g"},
        {"FilesThatTheShellReads", ". a; source b", "a|b"},
        {"NamesOfVariables", "export a b=c 'd[e]=f'; read g h; local i=j", "a|d[e]=f|g|h"},
        {"NamesOfVariablesAreNoCommands", "export sh -c a=b", "sh|-c"},
        {"DotWithAVersion", ".1 a", "a"},
        {"TestsOfNumbers", "[ a -eq b ]; test -v c; [ d = e ]", "a|-eq|b|]|-v|c"},
        {"TestsBehindRunners", "command test a -eq b; exec [ -v c ]", "a|-eq|b|-v|c|]"},
        {"NumbersToTheShell", "ulimit -n a; shift b; jobs -x eval c", "-n|a|b|c"},
        {"WhatTheShellCompletesOrLoads", "compgen -W a; enable -f b c", "-W|a|-f|b|c"},
        {"OptionsThatNameVariables",
         "printf -v a b; wait -n -pc d; print -rA e",
         "-v|a|b|-n|-pc|d|-rA|e"},
        {"OptionsBehindOperands", "printf a -v b; wait c -p d; print e -A f", ""},
        {"DeclarationsWithTypes",
         "declare -i a=b; typeset -ra c=d; export -A e=f; local x -n g=h",
         "-i|a=b|-ra|c=d|-A|e=f|x|-n|g=h"},
        {"DeclarationsThatAreTypes", "integer a=b; nameref c=d", "a=b|c=d"},
        {"VariablesOfDeclaredTypes", "a=b c; local -i d; for e in f; do g h; done", "a=b|-i|d|f"},
        {"DeclarationsWithoutTypes", "local a=b; a=c d; for a in e; do f; done", ""},
        {"VariablesThatAreArithmetic",
         "OPTIND=a RANDOM+=b c=d e; COLUMNS=f; FCOLUMNS=g; g COLUMNS=h",
         "OPTIND=a|RANDOM+=b|COLUMNS=f"},
        {"DeclaredVariablesThatAreArithmetic",
         "export LINES=a b=c; local TMOUT+=d",
         "LINES=a|TMOUT+=d"},
        {"VariablesOfAnEnvironment", "env PS4=a b=c BASH_ENV=d sh ./e ENV=f", "PS4=a|BASH_ENV=d"},
        {"LoopsOverVariablesThatAreArithmetic",
         "for OPTIND in a $(b c) 'd e'; do f; done; for g in h; do i; done; : j",
         "a|$$|d e"},
        {"LoopsWithALineEnd", "for PPID\nin a; do b c; done; for LINES; do d e; done", "a"},
        {"RunnersAreLookedThrough",
         "sudo -u a env B=c timeout 5 sh -c d; nohup awk e f; exec eval g",
         "-c|d|e|g"},
        {"RunnersWithOptionsAndOperands",
         "sudo -n -u a -- awk b; chroot /c eval d; env - e=f nice -n 5 eval g",
         "b|d|g"},
        {"RunnersOfFind", "find a -name b -exec awk c {} ;", "c"},
        {"ArgumentsOfWhatIsRun", "sudo systemctl status ssh -n; timeout 5 service make a", ""},
        {"UnknownRunnersOfAShell", "tool a sh -c b; xargs -n1 sh -c c", "-c|b|-c|c"},
        {"UnknownRunnersOfEval", "tool eval a; echo awk b", ""},
        {"ExpandedCommandMayBeAnything", "$a -c b; \"$(c)\" -e d; ${e:-f} eval g", "-c|b|-e|d|g"},
        {"ExpandedFolderOfAKnownCommand", "\"${a:-/b}/c\" -c d; $e/sh -c f", "-c|f"},
        {"ExpansionsOfTheirOwn", "$(sh -c a) \"$(eval b)\" `perl -e c`", "-c|a|b|-e|c"},
        {"PipeIntoAShell", "echo a | cat b | sudo sh -s; c", "echo|a|cat|b"},
        {"PipeIntoAShellWithCode", "echo a | sh -c b; echo c | sh ./d; echo e | grep sh", "-c|b"},
        {"PipeIntoTheInputAsAFile",
         "a | sh /dev/stdin; b | . /dev/fd/0; c | source ./d",
         "a|b|/dev/fd/0|./d"},
        {"PipeIntoAtAndCrontab", "a b | at now; c | crontab -", "a|b|c"},
        {"PipeIntoARemoteShell",
         "a | ssh -p 1 host; b | ssh host c; d | ssh -q host 'e >f'; g | rsh -l h i",
         "a|-p|1|host|host|c|-q|host|e >f|g|-l|h|i"},
        {"PipeIntoClientsThatRunCommands",
         "a | mysql b; c | psql -c d e; f | su - g; h | sqlite3 i; j | sqlite3 k l; m | ed n",
         "a|-c|d|e|f|h|i|k|l|m"},
        {"PipeIntoAShellOfSudo",
         "a | sudo -iu b; c | sudo --login; d | sudo -s tee e; f | doas -s; g | sudo tee h",
         "a|c|f"},
        {"PipeIntoAProgram", "a | awk -f -; b | sed -n -f c; d | awk -f /dev/stdin e", "a|d"},
        {"PipeOutOfACompound",
         "x; { a b; c; } | sh; while d; do e f; done | sh; if g; then h; fi | i",
         "{|a|b|c|}|while|d|do|e|f|done"},
        {"PipeOutOfALoopOrCase",
         "for a in b; do c; done | sh; case d in e) f;; esac | sh",
         "for|a|in|b|do|c|done|case|d|in|e|f|esac"},
        {"PipeOutOfAGroup", "x && (a b; (c) | d) | sh", "a|b|c|d"},
        {"PipeIntoACompound", "a b | { c; sh; }; d | if e; then sh; fi; sh", "a|b|d"},
        {"PipeIntoAGroup", "a b | (c; (sh)); d | (e); sh", "a|b"},
        {"PipeThroughACompound", "a b | { c; d; } | sh", "a|b|{|c|d|}"},
        {"PipeIntoXargs", "a | xargs sh -c; b | xargs sh; c | xargs -0 eval", "a|-c|b|c"},
        {"PipeIntoXargsThatPutsItInside",
         "a | xargs -I% sh -c 'b %'; c | xargs -i -t sed s/{}/d/",
         "a|-c|b %|c|s/{}/d/"},
        {"PipeIntoXargsWithCode",
         "a | xargs sh -c 'b \"$@\"' c; d | xargs awk e",
         "-c|b \"$@\"|c|e"},
        {"BodiesOfFunctions", "f() { eval a; }; f() awk b; f() if eval c; then :; fi", "a|b|c"},
        {"FunctionsThatMayWriteOrReadCode", "f() { a b; }; c | sh; g", "f|{|a|b|}|c|sh|g"},
        {"FunctionsWithoutCode", "f () { a b; }; c | d; (e) | g", ""},
        {"AliasesChangeTheLine", "a b; alias c=d; e f", "a|b|alias|c=d|e|f"},
        {"AssignmentsAndRedirectionsAreNoWords", "a=b sh <c -c d >e", "-c|d"},
        {"CommandsAreKeptApart", "sh; a -c b | sh d -c e", "-c|e"},
    }),
    NameOf);

TEST(ShellInterpreters, ManyInterpretersTakeLittleTime) {
    std::string line = "env";
    std::size_t words = 0;
    for (; words < 100000; words += 4) {
        line += " sh awk -v perl";
    }
    ShellLine read = ReadShellLine(line);
    MarkInterpretedWords(read);
    EXPECT_EQ(read.words.size(), words + 1);
}

TEST(ShellInterpreters, ManyOptionsThatLookLikeInterpretersTakeLittleTime) {
    std::string line = "env";
    std::size_t words = 0;
    for (; words < 200000; words += 2) {
        line += " -v awk";
    }
    ShellLine read = ReadShellLine(line);
    MarkInterpretedWords(read);
    EXPECT_EQ(read.words.size(), words + 1);
}

TEST(ShellInterpreters, ManyTestsTakeLittleTime) {
    std::string line = "find";
    std::size_t words = 0;
    for (; words < 200000; words += 2) {
        line += " -exec test";
    }
    ShellLine read = ReadShellLine(line);
    MarkInterpretedWords(read);
    EXPECT_EQ(read.words.size(), words + 1);
}

TEST(ShellInterpreters, LongPipesOfInterpretersTakeLittleTime) {
    constexpr std::size_t kCount = 100000;
    std::string line = "echo a";
    for (std::size_t i = 0; i < kCount; ++i) {
        line += " | sh";
    }
    ShellLine read = ReadShellLine(line);
    MarkInterpretedWords(read);
    std::size_t code = 0;
    for (const ShellWord& word : read.words) {
        code += word.isCode ? 1U : 0U;
    }
    EXPECT_EQ(code, kCount + 1);  // all but the last shell
}

}  // namespace

}  // namespace Corvel::AutoCli
